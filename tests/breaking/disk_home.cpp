#include "breaking/disk_home.h"

namespace kelvash::test {

namespace fs = std::filesystem;

void DiskHome::SetUp() {
    BreakingHome::SetUp();
    if (HasFatalFailure()) return;
    ledger.emplace(drive, home, trle);
    for (const fs::directory_entry& entry : fs::directory_iterator(levels)) {
        SaveLedger::Name(entry.path(), entry.path().filename().string());
        ledger->TakeStash(entry.path());
        // A folder that a move couldn't delete, or the level's new one, without the file that names it.
        const std::string name = entry.path().filename().string();
        for (const fs::path& folder : {levels, drive / "Moved"})
            ledger->Expect(folder / name, name);
    }
    ledger->Write(trle / "savegame.0", SaveLedger::kOriginal);
    ledger->Write(trle / "note3.txt", SaveLedger::kOriginal);
    Succeed({"install", "1"}, Answers::None);
    for (const char* name : {"savegame.0", "savegame.7", "shot001.jpg"})
        ledger->Write(trle / name, "LEVEL_0001");
    fs::create_directories(drive / "Moved");
    Keep();
}

std::vector<DiskHome::DiskCommand> DiskHome::Commands() const {
    return {{"install", {"install", "2"}},
            {"install of the original", {"install", "0"}},
            {"play", {"play", "3"}},
            {"restore fast", {"restore", "fast"}},
            {"restore full", {"restore", "full"}},
            {"add", {"add", (zips / "Clockwork Pass.zip").string()}},
            {"level set", {"level", "set", "4", "--note", "a new note"}},
            {"export", {"export", "1", "C:\\out.zip"}},
            {"move", {"move", "C:\\Moved"}},
            {"recover", {"recover", "C:\\Levels"}},
            {"save-as", {"save-as", "C:\\Kelvash\\Copy.kva"}},
            {"prefs", {"prefs", "--compress", "on"}},
            {"profile", {"profile", "SavegamesToKeep", "77"}}};
}

void DiskHome::ExpectRecovery() {
    Succeed({"restore", "fast"});
    EXPECT_EQ(ledger->FaultsOfRoot(), "");
    ExpectWhole(*ledger, drive);
    Succeed({"status"});
}

void DiskHome::ExpectWhole(const SaveLedger& saves, const fs::path& drive_c) const {
    EXPECT_EQ(saves.Faults(), "");
    const FileMap now = TreeOf(drive_c / trle.lexically_relative(drive));
    for (const auto& [name, bytes] : original) {
        const auto found = now.find(name);
        EXPECT_TRUE(found != now.end() && found->second == bytes) << name << " of TRLE isn't back";
    }
    for (const auto& [name, bytes] : now)
        EXPECT_TRUE(original.count(name) != 0 || IsSaveName(name) || name.ends_with(".log"))
            << name << " is left in TRLE";
}

// The marker is made of the record, which counts; it may wait for the next start. Half a copy that couldn't
// be deleted is taken for none, and goes with the next swap. A load picture that can't be unpacked isn't
// told, and the game shows its own.
FileMap DiskHome::Outcome() const {
    FileMap files;
    for (const auto& folder : {trle, levels, drive / "Moved"})
        for (const auto& [name, bytes] : TreeOf(folder))
            if (!name.ends_with("tr4.inf") && !name.ends_with("savegame.1") &&
                !name.ends_with("kelvash.txt") && !name.ends_with("kelvash.tmp") && name != "load.bmp")
                files[folder.filename().string() + "/" + name] = bytes;
    return files;
}

} // namespace kelvash::test
