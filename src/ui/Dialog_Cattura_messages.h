// The texts of Dialog_Cattura.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Cattura_messages.inc"
