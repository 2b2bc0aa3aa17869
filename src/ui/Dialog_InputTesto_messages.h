// The texts of Dialog_InputTesto.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_InputTesto_messages.inc"
