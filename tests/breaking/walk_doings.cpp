// What happens between two commands of a walk: a player's doings, and a bungler's.
#include <algorithm>

#include "breaking/walk.h"

namespace kelvash::test {

namespace fs = std::filesystem;

// What the game wrote belongs to the level that is in. Where that can't be known the player throws it away.
void WalkHome::TakeGameSaves() {
    for (const auto& [name, bytes] : FilesIn(trle)) {
        if (!IsSaveName(name) || bytes.starts_with("save of ")) continue;
        if (in_)
            ledger_->Write(trle / name, *in_);
        else
            fs::remove(trle / name);
    }
}

void WalkHome::PlayerWrites() {
    static const std::vector<std::string> names = {"savegame.0",  "savegame.1",  "savegame.2",
                                                   "savegame.12", "shot001.jpg", "note0.txt"};
    const std::string name = AnyOf(names);
    Log("the player writes " + name + " of " + *in_);
    ledger_->Write(trle / name, *in_);
}

void WalkHome::PlayerDeletes() {
    for (const auto& [name, bytes] : FilesIn(trle))
        if (IsSaveName(name)) {
            Log("the player deletes " + name);
            ledger_->Drop(bytes);
            fs::remove(trle / name);
            return;
        }
}

void WalkHome::Player() {
    if (in_ && !in_->empty() && Below(4) != 0)
        PlayerWrites();
    else
        PlayerDeletes();
    figures.Count("doings of the player");
}

void WalkHome::TellsNothing() {
    if (marker_damaged_ && record_damaged_) {
        trle_damaged_ = true; // nor what was overwritten: a full restore brings that back
        ledger_->OrphanRoot();
        in_.reset();
    }
}

void WalkHome::DamageMarker() {
    const fs::path marker = trle / "Kelvash.txt";
    if (!fs::exists(marker)) return;
    std::string bytes = BytesOf(marker);
    const int how = Below(5);
    Log("the marker is damaged, way " + std::to_string(how));
    fs::remove(marker);
    const std::size_t code = bytes.find("LEVEL_CODE=");
    const std::size_t copied = bytes.find("COPIED_FILES=");
    if (how == 1) bytes.clear();
    if (how == 2) bytes.resize(bytes.size() / 2);
    if (how == 3 && code != std::string::npos) bytes.replace(code + 11, 4, "0004");
    if (how == 4 && copied != std::string::npos) bytes.insert(copied + 13, "\\tomb4.exe|\\script.dat|");
    if (how != 0) MakeFile(marker, bytes);
    marker_damaged_ = true;
    TellsNothing();
}

// Whatever the program keeps in its folder about the swap; its other files are known by their names.
std::vector<fs::path> WalkHome::Records() const {
    std::vector<fs::path> records;
    for (const fs::directory_entry& entry : fs::directory_iterator(home)) {
        const std::string name = entry.path().filename().string();
        if (!entry.is_regular_file() || known_files_.count(name) != 0) continue;
        if (name.ends_with(".kva") || name.ends_with(".prf") || name.ends_with(".ini")) continue;
        records.push_back(entry.path());
    }
    std::sort(records.begin(), records.end());
    return records;
}

void WalkHome::DamageRecord() {
    const std::vector<fs::path> records = Records();
    if (records.empty()) return;
    const int how = Below(3);
    Log("the record " + records.front().filename().string() + " is damaged, way " + std::to_string(how));
    for (const fs::path& record : records) {
        const std::string bytes = BytesOf(record);
        fs::remove(record);
        if (how == 1) MakeFile(record, bytes.substr(0, bytes.size() / 2));
        if (how == 2) MakeFile(record, std::string(200, '\xA5'));
    }
    // A swap that was cut short has nothing else than the record.
    if (!in_ || !fs::exists(trle / "Kelvash.txt")) marker_damaged_ = true;
    record_damaged_ = true;
    TellsNothing();
}

void WalkHome::DamageTrle() {
    static const std::vector<std::string> names = {"english.dat", "script.dat", "load.bmp", "audio/010.wav",
                                                   "data/karnak.tr4"};
    const std::string name = AnyOf(names);
    Log("somebody deletes " + name);
    fs::remove(trle / name);
    trle_damaged_ = true;
}

void WalkHome::OwnFile() {
    static const std::vector<std::string> names = {"own.h",         "own.txt",           "audio/011.wav",
                                                   "audio/own.wav", "script/script.txt", "data/own.tr4"};
    const std::string name = AnyOf(names);
    Log("the user puts a file of his own in place of " + name);
    ledger_->Write(trle / name, SaveLedger::kUser);
    trle_damaged_ = true;
}

void WalkHome::DamageLevelFolder() {
    const fs::path folder = CurrentFolder();
    const std::vector<int> codes = Codes();
    if (codes.empty()) return;
    const fs::path level = folder / LevelName(AnyOf(codes));
    const std::string owner = ledger_->OwnerOf(level);
    ledger_->OrphanRootOf(owner);
    if (in_ == owner) in_.reset();
    ledger_->Expect(level, owner);
    if (Below(2) == 0) {
        Log("somebody deletes " + level.filename().string() + " of " + owner);
        ledger_->DropUnder(level);
        fs::remove_all(level);
    } else {
        Log("somebody renames " + level.filename().string() + " of " + owner);
        fs::rename(level, folder / ("away " + std::to_string(++serial_)));
    }
}

void WalkHome::Bungler() {
    const int choice = Below(100);
    if (choice < 35)
        DamageMarker();
    else if (choice < 55)
        DamageRecord();
    else if (choice < 70)
        DamageTrle();
    else if (choice < 88)
        OwnFile();
    else
        DamageLevelFolder();
    figures.Count("damages");
}

} // namespace kelvash::test
