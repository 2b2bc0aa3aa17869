// What this folder composes.
#pragma once

#include "cd/fragments.inc"
#include "foundation/messages.h"
