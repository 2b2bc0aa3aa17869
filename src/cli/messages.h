// The texts of the command line.
#pragma once

#include "cli/messages.inc"
#include "foundation/messages.h"
