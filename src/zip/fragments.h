// What this folder composes.
#pragma once

#include "foundation/messages.h"
#include "zip/fragments.inc"
