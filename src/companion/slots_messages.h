// The texts of the operations on savegames.
#pragma once

#include "companion/slots_messages.inc"
#include "foundation/messages.h"
