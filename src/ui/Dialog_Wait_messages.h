// The texts of Dialog_Wait.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Wait_messages.inc"
