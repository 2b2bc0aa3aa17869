#include "support/swap_home.h"

#include <algorithm>

#include "audio/audio_job.h"
#include "core/archive.h"
#include "core/profile.h"
#include "foundation/native_text.h"
#include "support/trle_sandbox.h"

namespace kelvash::test {

namespace fs = std::filesystem;

SwapHome::SwapHome() : trle(drive / "trle"), backup(home / "backup_trle"), levels(drive / "Levels") {
    MakeTrle(trle);
    fs::copy(trle, backup, fs::copy_options::recursive);
    fs::create_directories(levels);
    core::profile.TrleFolder = "C:\\trle";
    core::profile.LastArchive = "C:\\Kelvash\\test.kva";
    core::profile.FullBackup = true;
    core::archive.Header.MainFolder = "C:\\Levels";
    core::archive.Header.SecondaryFolder = "C:\\Levels";
    core::archive.Table = {};
    user.forms.Add<audio::AudioJob>([](audio::AudioJob& job) {
        audio::RunAudioJob(job, BarPlace::CallerForm);
        return true;
    });
    AddLevel(0, "- TRLE: Original configuration -", {});
}

void SwapHome::AddLevel(std::int32_t code, const std::string& name, const Files& files, const Files& stash) {
    core::LevelRecord level;
    level.Code = code;
    level.Name = name;
    core::archive.Table.Append(level);
    for (const char* folder : {"SAVEGAMES", "BACKUP_SAVEGAMES", "FILES", "SCREENSHOTS"})
        fs::create_directories(LevelPath(code) / folder);
    for (const auto& [file, bytes] : files)
        MakeFile(LevelPath(code) / "FILES" / NativeFromText(file), bytes);
    for (const auto& [file, bytes] : stash)
        MakeFile(StashPath(code) / NativeFromText(file), bytes);
}

fs::path SwapHome::LevelPath(std::int32_t code) const {
    const std::string digits = std::to_string(code);
    const std::string name = "LEVEL_" + std::string(4 - digits.size(), '0') + digits;
    return (code == 0 ? home : levels) / name;
}

std::vector<std::string> SwapHome::NamesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file()) names.push_back(TextOfNative(entry.path().filename()));
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace kelvash::test
