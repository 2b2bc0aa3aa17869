// The texts of Dialog_ScreenShot.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_ScreenShot_messages.inc"
