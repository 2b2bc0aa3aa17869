// Texts about who changes what.
#pragma once

#include "core/change_messages.inc"
#include "foundation/messages.h"
