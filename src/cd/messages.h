// Texts.
#pragma once

#include "cd/messages.inc"
#include "foundation/messages.h"
