// Texts of Dialog_ConvertAudio.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_ConvertAudio_messages.inc"
