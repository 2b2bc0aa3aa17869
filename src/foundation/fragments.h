// What this folder composes.
#pragma once

#include "foundation/fragments.inc"
#include "foundation/messages.h"
