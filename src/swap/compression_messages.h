// Texts of compression.
#pragma once

#include "foundation/messages.h"
#include "swap/compression_messages.inc"
