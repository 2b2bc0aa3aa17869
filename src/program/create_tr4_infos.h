// The tr4.inf of the levels that have none yet.
#pragma once

namespace kelvash::program {

// The command "Create all [info tr4 files]". Each level that can't be done is told.
void CreaInfoTr4();

} // namespace kelvash::program
