// Texts of moving, recovering and tidying an Archive.
#pragma once

#include "core/moving_messages.inc"
#include "foundation/messages.h"
