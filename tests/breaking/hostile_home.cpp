#include "breaking/hostile_home.h"

#include <algorithm>

#include "breaking/hostile_names.h"

namespace kelvash::test {

namespace fs = std::filesystem;

void HostileHome::Begin() {
    Renew();
    package = zips / "case.zip";
    known_levels_.clear();
    for (const fs::directory_entry& entry : fs::directory_iterator(levels))
        known_levels_.insert(entry.path().filename().string());
    figures.Count("cases");
}

std::function<bool(const std::string&)> HostileHome::Allowed(May may) const {
    return [this, may](const std::string& path) {
        if (path == "runtime" || path.starts_with("runtime/") || path.starts_with("tmp/")) return true;
        const std::string home_prefix = "box/drive_c/Kelvash/";
        if (path.starts_with(home_prefix)) {
            const std::string name = path.substr(home_prefix.size());
            if (name == "drives.txt") return false;
            if (name.starts_with("backup_trle") || name.starts_with("LEVEL_0000/BACKUP")) return false;
            return true;
        }
        const std::string levels_prefix = "box/drive_c/Levels/";
        if (may == May::Nothing || !path.starts_with(levels_prefix)) return false;
        const std::string name = path.substr(levels_prefix.size());
        const std::string folder = name.substr(0, name.find('/'));
        if (folder == "KEPT") return true;
        return may == May::AddLevel && folder.starts_with("LEVEL_") && known_levels_.count(folder) == 0;
    };
}

Told HostileHome::Check(const Words& words, May may, Answers answers, double seconds) {
    const Snapshot before = SnapshotOf(ground);
    Told told = Run(words, answers);
    ExpectSane(told, seconds);
    EXPECT_EQ(Differences(before, SnapshotOf(ground), Allowed(may)), "") << told.Story();
    return told;
}

Told HostileHome::Add(const std::string& zip, Answers answers) {
    MakeFile(package, zip);
    Told told = Check({"add", package.string()}, May::AddLevel, answers);
    ExpectPlainNames();
    if (told.status() == 0) {
        EXPECT_GT(told.result.value("code", 0), 0) << told.Story();
        return told;
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(levels))
        EXPECT_TRUE(known_levels_.count(entry.path().filename().string()) != 0 ||
                    entry.path().filename() == "KEPT")
            << entry.path() << " is left of a refused level\n"
            << told.Story();
    return told;
}

void HostileHome::WalkRoad(int code) {
    const std::string number = std::to_string(code);
    const auto run = [&](const Words& words) {
        Told told = Run(words, Answers::Yes);
        ExpectSane(told);
        return told;
    };
    const Snapshot before = SnapshotOf(ground);
    run({"status"});
    run({"levels"});
    run({"equal"});
    run({"install", number});
    run({"restore", "fast"});
    ExpectOriginal("restore fast");
    run({"export", number, Dos(zips / "exported.zip")});
    run({"remove", number});
    ExpectOriginal("remove");
    const auto allowed = [&](const std::string& path) {
        return path.starts_with("box/drive_c/zips/exported.zip") ||
               path.starts_with("box/drive_c/Program Files/") ||
               path.starts_with("box/drive_c/Levels/" + LevelName(code)) || Allowed(May::AddLevel)(path);
    };
    EXPECT_EQ(Differences(before, SnapshotOf(ground), allowed), "") << "on the road of level " << code;
    figures.Count("roads");
}

void HostileHome::ExpectOriginal(const std::string& after) const {
    const FileMap now = OriginalFiles();
    for (const auto& [name, bytes] : original) {
        const auto found = now.find(name);
        if (found == now.end())
            ADD_FAILURE() << name << " of TRLE is gone after " << after;
        else
            EXPECT_EQ(found->second == bytes, true) << name << " of TRLE is changed after " << after;
    }
    for (const auto& [name, bytes] : now)
        EXPECT_EQ(original.count(name), 1U) << name << " is left in TRLE after " << after;
}

void HostileHome::ExpectPlainNames() const {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(levels)) {
        const std::string name = entry.path().filename().string();
        EXPECT_EQ(FaultOfName(name), "")
            << "the file " << testing::PrintToString(name) << " in " << entry.path().parent_path();
    }
}

bool HostileHome::Holds(const std::string& bytes) const {
    const auto holds = [&](const FileMap& files) {
        return std::any_of(files.begin(), files.end(),
                           [&](const auto& file) { return file.second == bytes; });
    };
    return holds(TreeOf(levels)) || holds(TreeOf(trle));
}

} // namespace kelvash::test
