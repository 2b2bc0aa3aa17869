// What this folder composes.
#pragma once

#include "foundation/messages.h"
#include "program/fragments.inc"
