// Texts of start-up, profile and registration.
#pragma once

#include "core/start_up_messages.inc"
#include "foundation/messages.h"
