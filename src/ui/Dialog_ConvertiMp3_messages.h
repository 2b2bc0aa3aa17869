// Texts of Dialog_ConvertiMp3.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_ConvertiMp3_messages.inc"
