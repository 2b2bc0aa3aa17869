// Texts of backup and restore.
#pragma once

#include "foundation/messages.h"
#include "swap/backup_messages.inc"
