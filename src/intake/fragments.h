// What this folder composes.
#pragma once

#include "foundation/messages.h"
#include "intake/fragments.inc"
