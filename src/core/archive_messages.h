// Texts of the Archive.
#pragma once

#include "core/archive_messages.inc"
#include "foundation/messages.h"
