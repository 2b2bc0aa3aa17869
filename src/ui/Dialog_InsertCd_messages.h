// The texts of Dialog_InsertCd.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_InsertCd_messages.inc"
