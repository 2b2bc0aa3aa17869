// The texts of Dialog_ListSaveGame.
#pragma once

#include "foundation/messages.h"
#include "ui/Dialog_ListSaveGame_messages.inc"
