// The texts of Dialog_Progress.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Progress_messages.inc"
