// What this folder composes.
#pragma once

#include "companion/fragments.inc"
#include "foundation/messages.h"
