// The texts of deleting, importing, exporting, finding and sending savegames.
#pragma once

#include "companion/savegame_messages.inc"
#include "foundation/messages.h"
