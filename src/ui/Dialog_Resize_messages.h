// The texts of Dialog_Resize.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Resize_messages.inc"
