// The texts of Dialog_Splash.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Splash_messages.inc"
