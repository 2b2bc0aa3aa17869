// The texts of Dialog_Blank.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Blank_messages.inc"
