// What this folder composes.
#pragma once

#include "core/fragments.inc"
#include "foundation/messages.h"
