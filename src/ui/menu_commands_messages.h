// Texts of what the commands of the menus have done.
#pragma once

#include "foundation/messages.h"
#include "ui/menu_commands_messages.inc"
