// The texts of the savegames' panel.
#pragma once

#include "foundation/messages.h"
#include "ui/savegame_panel_messages.inc"
