// Texts of several forms.
#pragma once

#include "foundation/messages.h"
#include "ui/messages.inc"
