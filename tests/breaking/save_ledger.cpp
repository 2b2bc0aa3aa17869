#include "breaking/save_ledger.h"

#include <algorithm>
#include <set>

#include "support/foundation_home.h"
#include "support/swap_world.h"

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

// A name that the program gives a file only until it is whole.
bool IsUnfinished(const std::string& name) {
    return name.ends_with(".new") || name.ends_with(".tmp");
}

bool IsSaveFolder(const std::string& name) {
    return name == "BACKUP_SAVEGAMES" || name == "SAVEGAMES";
}

// In a folder for what could not be placed.
bool LiesAside(const fs::path& below) {
    return std::any_of(below.begin(), below.end(), [](const fs::path& part) {
        const std::string name = part.string();
        return name.starts_with("rescued_saves") || name == "kept_files" || name == "KEPT";
    });
}

} // namespace

SaveLedger::SaveLedger(fs::path drive, fs::path home, fs::path trle)
    : drive_(std::move(drive)), home_(std::move(home)), trle_(std::move(trle)) {}

void SaveLedger::Name(const fs::path& level, const std::string& owner) {
    MakeFile(level / "FILES/owner.txt", owner);
}

std::string SaveLedger::OwnerOf(const fs::path& level) const {
    if (level == home_ / "LEVEL_0000") return kOriginal;
    const fs::path note = level / "FILES/owner.txt";
    if (fs::exists(note)) return BytesOf(note);
    const auto expected = expected_.find(level);
    return expected == expected_.end() ? std::string() : expected->second;
}

void SaveLedger::TakeStash(const fs::path& level) {
    for (const auto& [name, bytes] : FilesIn(level / "BACKUP_SAVEGAMES"))
        if (IsSaveName(name)) Write(level / "BACKUP_SAVEGAMES" / name, OwnerOf(level));
}

void SaveLedger::Write(const fs::path& file, const std::string& owner) {
    if (fs::exists(file)) Drop(BytesOf(file));
    const std::string bytes = WriteStamped(file, "save of " + owner);
    saves_[bytes] = {owner, file.filename().string()};
}

void SaveLedger::Drop(const std::string& bytes) {
    if (const auto save = saves_.find(bytes); save != saves_.end()) save->second.state = State::Dropped;
}

void SaveLedger::DropAllOf(const std::string& owner) {
    for (auto& [bytes, save] : saves_)
        if (save.owner == owner) save.state = State::Dropped;
}

void SaveLedger::DropNamed(const std::string& owner, const std::string& name) {
    for (auto& [bytes, save] : saves_)
        if (save.owner == owner && save.name == name) save.state = State::Dropped;
}

void SaveLedger::DropUnder(const fs::path& folder) {
    std::set<std::string> played;
    for (const auto& [name, bytes] : FilesIn(trle_))
        played.insert(bytes);
    for (const auto& [name, bytes] : TreeOf(folder))
        if (played.count(bytes) == 0) Drop(bytes);
}

void SaveLedger::OrphanRoot() {
    for (const auto& [name, bytes] : FilesIn(trle_))
        if (const auto save = saves_.find(bytes); save != saves_.end() && save->second.owner != kUser)
            if (save->second.state == State::Alive) save->second.state = State::Orphan;
}

void SaveLedger::OrphanRootOf(const std::string& owner) {
    for (const auto& [name, bytes] : FilesIn(trle_))
        if (const auto save = saves_.find(bytes); save != saves_.end() && save->second.owner == owner)
            if (save->second.state == State::Alive) save->second.state = State::Orphan;
}

SaveLedger::Found SaveLedger::PlaceOf(const fs::path& file) const {
    Found found;
    found.path = file.lexically_relative(drive_).string();
    if (LiesAside(file.lexically_relative(drive_).parent_path())) return found;
    for (fs::path at = file.parent_path(); at != drive_ && at.has_relative_path(); at = at.parent_path())
        if (IsSaveFolder(at.filename().string())) {
            found.in_stash = true;
            found.level = OwnerOf(at.parent_path());
        }
    return found;
}

std::map<std::string, std::vector<SaveLedger::Found>> SaveLedger::FindAll() const {
    constexpr std::uintmax_t kLongest = 100; // of what Write makes
    std::map<std::string, std::vector<Found>> all;
    std::error_code error;
    for (fs::recursive_directory_iterator at(drive_, error), end; at != end; at.increment(error)) {
        // Copies: of the original, and of a move that isn't done. Each save has to be somewhere else as well.
        if (at->path() == home_ / "backup_trle" || at->path().filename() == "KELVASH_MOVE") {
            at.disable_recursion_pending();
            continue;
        }
        if (!at->is_regular_file(error) || at->file_size(error) > kLongest) continue;
        if (IsUnfinished(at->path().filename().string())) continue;
        const std::string bytes = BytesOf(at->path());
        if (saves_.count(bytes) != 0) all[bytes].push_back(PlaceOf(at->path()));
    }
    return all;
}

std::string SaveLedger::FaultOf(const Save& save, const std::vector<Found>& found) const {
    std::string faults;
    for (const Found& place : found) {
        if (!place.in_stash || place.level == save.owner) continue;
        // Nothing tells saves that nobody owns from those of the original.
        if (save.state == State::Orphan && place.level == kOriginal) continue;
        faults += save.name + " of " + save.owner + " lies under " +
                  (place.level.empty() ? "a level without a name" : place.level) + ": " + place.path + "\n";
    }
    if (found.empty() && save.state != State::Dropped)
        faults += save.name + " of " + save.owner + " is lost\n";
    return faults;
}

std::string SaveLedger::Faults() const {
    const auto all = FindAll();
    std::string faults;
    for (const auto& [bytes, save] : saves_) {
        const auto found = all.find(bytes);
        const std::string fault = FaultOf(save, found == all.end() ? std::vector<Found>() : found->second);
        if (!fault.empty()) faults += "[" + bytes + "] " + fault;
    }
    return faults;
}

SaveLedger SaveLedger::MovedTo(const fs::path& drive) const {
    SaveLedger moved(drive, drive / home_.lexically_relative(drive_),
                     drive / trle_.lexically_relative(drive_));
    moved.saves_ = saves_;
    return moved;
}

std::string SaveLedger::FaultsOfRoot() const {
    std::string faults;
    for (const auto& [name, bytes] : FilesIn(trle_)) {
        const auto save = saves_.find(bytes);
        if (save == saves_.end() || save->second.state == State::Orphan) continue;
        if (save->second.owner != kOriginal && save->second.owner != kUser)
            faults += name + " of " + save->second.owner + " is in the original's root\n";
    }
    return faults;
}

} // namespace kelvash::test
