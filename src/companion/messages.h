// The texts of the companion.
#pragma once

#include "companion/messages.inc"
#include "foundation/messages.h"
