// The texts of the swap.
#pragma once

#include "foundation/messages.h"
#include "swap/messages.inc"
