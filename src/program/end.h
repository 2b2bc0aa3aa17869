// The end of a run: what is still unsaved, and the system's settings back.
#pragma once

namespace kelvash::program {

// Offers to save the Archive (one that couldn't be saved has its changes still), writes the profile, and puts
// the window animation back. False, without a message, if the profile can't be written; the old settings
// stand then.
[[nodiscard]] bool SaveProfile();
// The same where the user can stay: for the Archive or the profile that couldn't be saved it asks whether the
// changes may be lost. False if not; the run goes on then.
[[nodiscard]] bool SaveToClose();

} // namespace kelvash::program
