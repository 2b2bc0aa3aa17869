// The texts of the window beside the game.
#pragma once

#include "foundation/messages.h"
#include "ui/watch_window_messages.inc"
