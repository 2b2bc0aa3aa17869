// The texts of Dialog_NewLevel.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_NewLevel_messages.inc"
