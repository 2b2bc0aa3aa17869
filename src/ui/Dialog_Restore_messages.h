// The texts of Dialog_Restore.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Restore_messages.inc"
