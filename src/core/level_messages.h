// Texts about a level of the Archive.
#pragma once

#include "core/level_messages.inc"
#include "foundation/messages.h"
