// The texts of the first start's page.
#pragma once

#include "foundation/messages.h"
#include "ui/first_start_messages.inc"
