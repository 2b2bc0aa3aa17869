// What this folder composes.
#pragma once

#include "audio/fragments.inc"
#include "foundation/messages.h"
