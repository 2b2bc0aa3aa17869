// Why a wave isn't converted.
#pragma once

#include "audio/wave_messages.inc"
#include "foundation/messages.h"
