// The texts of moved_saves.
#pragma once

#include "foundation/messages.h"
#include "swap/moved_saves_messages.inc"
