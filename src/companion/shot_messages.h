// The texts of what is done with screenshots.
#pragma once

#include "companion/shot_messages.inc"
#include "foundation/messages.h"
