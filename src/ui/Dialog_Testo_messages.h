// The texts of Dialog_Testo.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Testo_messages.inc"
