// The system's programs for mp3 files in a test's own application's folder, which reaches no others.
#pragma once

#include <filesystem>
#include <string>

#include "support/foundation_home.h"

namespace kelvash::test {

// A shell script as a program of that name in the application's folder.
inline void PutScript(const std::filesystem::path& home, const std::string& name, const std::string& script) {
    MakeFile(home / name, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(home / name, std::filesystem::perms::owner_all);
}

inline void PutAudioTools(const std::filesystem::path& home) {
    PutScript(home, "madplay.exe", "exec /usr/bin/madplay \"$@\"");
    PutScript(home, "lame.exe", "exec /usr/bin/lame \"$@\"");
}

} // namespace kelvash::test
