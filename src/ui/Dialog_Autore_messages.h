// The texts of Dialog_Autore.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Autore_messages.inc"
