// The texts of Dialog_Keys.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Keys_messages.inc"
