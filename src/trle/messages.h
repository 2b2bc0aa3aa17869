// Texts.
#pragma once

#include "foundation/messages.h"
#include "trle/messages.inc"
