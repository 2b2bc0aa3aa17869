// The choice of an encoding by the user, and the test of one.
#pragma once

namespace kelvash::audio {

// Leaves what was chosen in mp3_settings.
struct Mp3Choice {
    static constexpr const char* kForm = "Dialog_SetMp3";
    bool InsertUtility = false; // the decoder goes into the package too
};

// Encodes a wave that is asked for by mp3_settings and plays the result with the desktop's program.
void TestMp3Encoding();

} // namespace kelvash::audio
