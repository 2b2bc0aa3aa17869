// The texts about what stands in the TRLE folder.
#pragma once

#include "foundation/messages.h"
#include "trle_state/messages.inc"
