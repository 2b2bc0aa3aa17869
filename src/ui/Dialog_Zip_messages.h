// The texts of Dialog_Zip.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_Zip_messages.inc"
