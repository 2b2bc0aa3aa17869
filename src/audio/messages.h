// Texts.
#pragma once

#include "audio/messages.inc"
#include "foundation/messages.h"
