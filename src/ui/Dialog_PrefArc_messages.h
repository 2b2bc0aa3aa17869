// The texts of Dialog_PrefArc.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_PrefArc_messages.inc"
