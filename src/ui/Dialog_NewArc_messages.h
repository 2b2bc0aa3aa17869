// The texts of Dialog_NewArc.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_NewArc_messages.inc"
