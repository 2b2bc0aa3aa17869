// The foundation's texts.
#pragma once

#include "foundation/messages.h"
#include "foundation/messages.inc"
