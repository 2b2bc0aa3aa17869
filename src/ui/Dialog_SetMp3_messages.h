// Texts of Dialog_SetMp3.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_SetMp3_messages.inc"
