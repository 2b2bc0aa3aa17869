// The texts of zip files.
#pragma once

#include "foundation/messages.h"
#include "zip/messages.inc"
