// The captions of the main form's menu.
#pragma once

#include "foundation/messages.h"
#include "ui/principale_menu_messages.inc"
