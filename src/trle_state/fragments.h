// What this folder composes.
#pragma once

#include "foundation/messages.h"
#include "trle_state/fragments.inc"
