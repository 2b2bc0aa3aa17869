// The texts of intake and export.
#pragma once

#include "foundation/messages.h"
#include "intake/messages.inc"
