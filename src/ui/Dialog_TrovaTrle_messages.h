// The texts of Dialog_TrovaTrle.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_TrovaTrle_messages.inc"
