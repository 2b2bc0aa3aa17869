// Texts of what commands the subsystems.
#pragma once

#include "foundation/messages.h"
#include "program/messages.inc"
