// The texts of Dialog_Settings.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Settings_messages.inc"
