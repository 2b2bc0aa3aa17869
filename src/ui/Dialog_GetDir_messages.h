// The texts of Dialog_GetDir.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_GetDir_messages.inc"
