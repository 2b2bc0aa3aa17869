// The texts of Dialog_Indice.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Indice_messages.inc"
