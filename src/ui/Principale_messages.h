// The texts of the main form.
#pragma once

#include "foundation/messages.h"
#include "ui/Principale_messages.inc"
