// A long random walk over all operations that move savegames. After every step the slots, the archive and
// what is kept are compared with a model that moves names about in memory, as the operations were first
// described: everything into one heap, sorted, and out again.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <random>
#include <set>

#include "companion/archive_slots.h"
#include "companion/compact_slots.h"
#include "companion/restore_slots.h"
#include "companion/savegame_commands.h"
#include "companion/savegame_notes.h"
#include "companion/savegame_transfer.h"
#include "support/savegame_home.h"
#include "swap/install.h"

namespace kelvash::companion {
namespace {

using test::SaveMap;

struct ModelSave {
    int number = 0;
    std::string id;   // what its bytes are beside the number
    std::string note; // empty for none
    int slot = 0;     // the N of its name

    bool IsTwinOf(const ModelSave& other) const { return number == other.number && id == other.id; }
};
using Saves = std::vector<ModelSave>;

// As a folder lists them: by name, so that 10 comes before 2.
void SortByName(Saves& saves) {
    std::sort(saves.begin(), saves.end(), [](const ModelSave& a, const ModelSave& b) {
        return std::to_string(a.slot) < std::to_string(b.slot);
    });
}

void SortByNumber(Saves& saves) {
    std::stable_sort(saves.begin(), saves.end(),
                     [](const ModelSave& a, const ModelSave& b) { return a.number < b.number; });
}

int LowestFree(const Saves& saves) {
    int free = 0;
    while (std::any_of(saves.begin(), saves.end(), [=](const ModelSave& save) { return save.slot == free; }))
        ++free;
    return free;
}

struct SavesModel {
    Saves slots;
    std::map<int, Saves> folders; // slotN that are there
    Saves repeated;
    std::multiset<std::string> repeated_notes;

    void Number(Saves saves) {
        for (std::size_t i = 0; i < saves.size(); ++i)
            saves[i].slot = static_cast<int>(i);
        slots = std::move(saves);
    }

    void Compact() {
        SortByName(slots);
        SortByNumber(slots);
        Number(slots);
    }

    void Archive(int count) {
        if (slots.size() < 2) return;
        SortByName(slots);
        for (std::size_t i = 0; i < slots.size(); ++i)
            for (std::size_t j = i + 1; j < slots.size(); ++j)
                if (slots[i].number > slots[j].number) std::swap(slots[i], slots[j]);
        const std::size_t total = slots.size();
        const std::size_t taken = std::min(total, static_cast<std::size_t>(count));
        int folder = 1;
        while (folders.count(folder) != 0)
            ++folder;
        Saves& archived = folders[folder];
        for (std::size_t i = 0; i < taken; ++i) {
            archived.push_back(slots[i]);
            archived.back().slot = static_cast<int>(i);
        }
        const std::size_t from = taken == total ? total - 1 : taken;
        Number(Saves(slots.begin() + static_cast<std::ptrdiff_t>(from), slots.end()));
    }

    void PassNote(const ModelSave& gone) {
        if (gone.note.empty()) return;
        const auto twin = std::find_if(slots.begin(), slots.end(),
                                       [&](const ModelSave& save) { return save.IsTwinOf(gone); });
        if (twin->note.empty())
            twin->note = gone.note;
        else if (twin->note != gone.note)
            repeated_notes.insert(gone.note);
    }

    void RestoreLast() {
        if (slots.size() >= 15) return;
        int last = 0;
        while (folders.count(last + 1) != 0)
            ++last;
        for (; last > 0 && folders[last].empty(); --last)
            folders.erase(last);
        if (last == 0) return;
        Saves& folder = folders[last];
        SortByName(folder);
        std::stable_sort(folder.begin(), folder.end(),
                         [](const ModelSave& a, const ModelSave& b) { return a.number > b.number; });
        Saves heap = slots, stays, doubles;
        for (const ModelSave& save : folder) {
            const bool is_double = std::any_of(heap.begin(), heap.end(), [&](const ModelSave& other) {
                return other.number == save.number;
            });
            if (!stays.empty())
                stays.push_back(save); // the search for a free name has ended
            else if (is_double)
                doubles.push_back(save);
            else if (const int free = LowestFree(heap); free < 15 && heap.size() < 15) {
                heap.push_back(save);
                heap.back().slot = free;
            } else
                stays.push_back(save);
        }
        folder = stays;
        SortByName(heap);
        SortByNumber(heap);
        Number(heap);
        for (const ModelSave& save : doubles) {
            const bool has_twin = std::any_of(slots.begin(), slots.end(),
                                              [&](const ModelSave& other) { return other.IsTwinOf(save); });
            if (has_twin)
                PassNote(save);
            else
                repeated.push_back(save);
        }
    }

    void ToSlots(ModelSave save) {
        if (slots.size() >= 15) Archive(15);
        save.slot = LowestFree(slots);
        slots.push_back(save);
        Compact();
    }

    bool Import(const Saves& files) {
        if (slots.size() + files.size() > 15) Archive(15);
        if (slots.size() + files.size() > 15) return false;
        for (ModelSave save : files) {
            save.slot = LowestFree(slots);
            slots.push_back(save);
        }
        return true;
    }
};

void Show(const std::string& folder, const Saves& saves, SaveMap& shown) {
    for (const ModelSave& save : saves) {
        const std::string slot = std::to_string(save.slot);
        shown[folder + "savegame." + slot] = std::to_string(save.number) + save.id;
        if (!save.note.empty()) shown[folder + "note" + slot + ".txt"] = save.note + "\r\n";
    }
}

class SavegameWalk : public test::SavegameHome, public testing::WithParamInterface<int> {
  protected:
    // Every other walk goes through the game's own folder.
    void SetUp() override {
        if (!IsInTrle()) return;
        ASSERT_TRUE(swap::InstallLevel(1));
    }
    static bool IsInTrle() { return GetParam() % 2 == 0; }
    std::filesystem::path SlotsNow() const { return IsInTrle() ? trle : Slots(); }
    SaveMap InSlots() const {
        SaveMap found = Contents(SlotsNow());
        if (IsInTrle())
            std::erase_if(found, [](const auto& file) {
                return file.first.find('/') != std::string::npos ||
                       (!file.first.starts_with("savegame.") && !file.first.starts_with("note"));
            });
        return found;
    }

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    ModelSave NewSave() { return {1 + Below(25), "#" + std::to_string(++made), {}, 0}; }

    std::string SlotPath(int slot) const {
        return std::string(IsInTrle() ? "C:\\trle" : "C:\\Levels\\LEVEL_0001\\backup_savegames") +
               "\\savegame." + std::to_string(slot);
    }
    static std::string ArchivedPath(int folder, int slot) {
        return "C:\\Levels\\LEVEL_0001\\savegames\\slot" + std::to_string(folder) + "\\savegame." +
               std::to_string(slot);
    }
    // A random savegame: of the slots (folder 0) or archived; null if there is none.
    ModelSave* Any(int& folder, bool archived_only) {
        std::vector<std::pair<int, ModelSave*>> all;
        if (!archived_only)
            for (ModelSave& save : model.slots)
                all.emplace_back(0, &save);
        for (auto& [number, saves] : model.folders)
            for (ModelSave& save : saves)
                all.emplace_back(number, &save);
        if (all.empty()) return nullptr;
        ModelSave* save = nullptr;
        std::tie(folder, save) = all[static_cast<std::size_t>(Below(static_cast<int>(all.size())))];
        return save;
    }
    std::string PathOf(int folder, const ModelSave& save) const {
        return folder == 0 ? SlotPath(save.slot) : ArchivedPath(folder, save.slot);
    }

    void GameSaves();
    void Copy();
    void CopyKept();
    void Export();
    void Delete();
    void Note();
    void Import();
    void Step();
    void Check();

    std::mt19937 random{static_cast<unsigned>(GetParam())};
    SavesModel model;
    int made = 0;
    int wanted = 0;                     // operations that had something to do, and did it
    std::set<std::string> alive, notes; // never lost but by a delete
    std::map<std::string, int> done;
};

void SavegameWalk::GameSaves() {
    ModelSave save = NewSave();
    save.slot = Below(18); // the game has 15; others come by hand
    test::MakeFile(SlotsNow() / ("savegame." + std::to_string(save.slot)),
                   test::SaveBytes("City", save.number, save.id));
    alive.insert(std::to_string(save.number) + save.id);
    for (ModelSave& old : model.slots)
        if (old.slot == save.slot) { // overwritten by the player; its note stays
            save.note = old.note;
            alive.erase(std::to_string(old.number) + old.id);
            old = save;
            return;
        }
    model.slots.push_back(save);
}

void SavegameWalk::Copy() {
    int folder = 0;
    const ModelSave* save = Any(folder, true);
    if (save == nullptr) return;
    if (model.slots.size() >= 15) user.WillAnswer("All Tomb Raider slots are full", "yes");
    const SlotsOutcome outcome = RestoreToSlots(1, PathOf(folder, *save));
    EXPECT_EQ(outcome.Result, SlotsResult::Done) << outcome.Message.text;
    model.ToSlots(ModelSave(*save));
    ++wanted;
}

// One that was put aside at a restore comes back, and stays where it is.
void SavegameWalk::CopyKept() {
    if (model.repeated.empty()) return;
    const ModelSave save =
        model.repeated[static_cast<std::size_t>(Below(static_cast<int>(model.repeated.size())))];
    const SaveMap kept = Contents(Repeated());
    const auto file = std::find_if(kept.begin(), kept.end(), [&](const auto& entry) {
        return entry.second == std::to_string(save.number) + save.id;
    });
    ASSERT_NE(file, kept.end());
    if (model.slots.size() >= 15) user.WillAnswer("All Tomb Raider slots are full", "yes");
    const SlotsOutcome outcome = RestoreToSlots(1, "C:\\Levels\\LEVEL_0001\\REPEATED\\" + file->first);
    EXPECT_EQ(outcome.Result, SlotsResult::Done) << outcome.Message.text;
    model.ToSlots(save);
    ++wanted;
}

void SavegameWalk::Export() {
    int folder = 0;
    ModelSave* save = Any(folder, false);
    if (save == nullptr) return;
    const ModelSave sent = *save;
    const bool goes = Below(3) == 0;
    std::filesystem::create_directories(drive / "out");
    const SlotsOutcome outcome =
        ExportSavegames(1, {PathOf(folder, sent)}, "C:\\out", goes ? Sources::Delete : Sources::Keep);
    EXPECT_EQ(outcome.Result, SlotsResult::Done) << outcome.Message.text;
    const SaveMap out = Contents(drive / "out");
    const std::string slot = std::to_string(sent.slot);
    EXPECT_EQ(out.at("savegame." + slot), std::to_string(sent.number) + sent.id);
    EXPECT_EQ(out.count("note" + slot + ".txt") > 0, goes && !sent.note.empty());
    std::filesystem::remove_all(drive / "out");
    ++wanted;
    if (!goes) return;
    alive.erase(std::to_string(sent.number) + sent.id);
    notes.erase(sent.note);
    std::erase_if(folder == 0 ? model.slots : model.folders[folder],
                  [&](const ModelSave& other) { return other.slot == sent.slot; });
}

void SavegameWalk::Delete() {
    int folder = 0;
    ModelSave* save = Any(folder, false);
    if (save == nullptr) return;
    user.WillAnswer("Delete savegame [", "yes");
    const SlotsOutcome outcome = AskDeleteSavegame(1, PathOf(folder, *save));
    EXPECT_EQ(outcome.Result, SlotsResult::Done) << outcome.Message.text;
    alive.erase(std::to_string(save->number) + save->id);
    notes.erase(save->note);
    const auto is_it = [slot = save->slot](const ModelSave& other) { return other.slot == slot; };
    std::erase_if(folder == 0 ? model.slots : model.folders[folder], is_it);
    if (folder == 0) model.Compact();
    ++wanted;
}

void SavegameWalk::Note() {
    int folder = 0;
    ModelSave* save = Any(folder, false);
    if (save == nullptr) return;
    notes.erase(save->note);
    save->note = Below(5) == 0 ? std::string() : "note " + std::to_string(++made);
    if (!save->note.empty()) notes.insert(save->note);
    EXPECT_TRUE(WriteNote(PathOf(folder, *save), save->note));
    ++wanted;
}

void SavegameWalk::Import() {
    Saves files;
    std::vector<std::string> paths;
    for (int i = Below(15); i >= 0; --i) {
        files.push_back(NewSave());
        const std::string name = "in/" + std::to_string(made) + "/savegame.3";
        test::MakeFile(drive / name, test::SaveBytes("City", files.back().number, files.back().id));
        paths.push_back("C:\\in\\" + std::to_string(made) + "\\savegame.3");
    }
    user.MayBeTold("Too savegames! Max number of savegames to import in a single operation is 14");
    const std::size_t folders = model.folders.size();
    const SlotsOutcome outcome = ImportSavegames(1, paths);
    const bool fits = model.Import(files);
    const bool archived = model.folders.size() > folders;
    EXPECT_EQ(outcome.Result, fits       ? SlotsResult::Done
                              : archived ? SlotsResult::Partly
                                         : SlotsResult::Nothing)
        << outcome.Message.text;
    wanted += fits ? 1 : 0;
    if (fits)
        for (const ModelSave& save : files)
            alive.insert(std::to_string(save.number) + save.id);
    std::filesystem::remove_all(drive / "in");
}

void SavegameWalk::Step() {
    const int choice = Below(100);
    const char* name = "game";
    if (choice < 40) {
        GameSaves();
    } else if (choice < 52) {
        const int count = 1 + Below(15);
        const SlotsResult expected = model.slots.size() < 2 ? SlotsResult::Nothing : SlotsResult::Done;
        EXPECT_EQ(ArchiveSlots(1, count, Asker::User).Result, expected);
        wanted += expected == SlotsResult::Done ? 1 : 0;
        model.Archive(count);
        name = "archive";
    } else if (choice < 66) {
        const SlotsResult result = RestoreLastSlot(1, Asker::Watcher).Result;
        EXPECT_TRUE(result == SlotsResult::Done || result == SlotsResult::Nothing);
        wanted += result == SlotsResult::Done ? 1 : 0;
        model.RestoreLast();
        name = "restore";
    } else if (choice < 74) {
        Copy();
        name = "to slots";
    } else if (choice < 78) {
        CopyKept();
        name = "from kept";
    } else if (choice < 82) {
        Export();
        name = "export";
    } else if (choice < 88) {
        Delete();
        name = "delete";
    } else if (choice < 94) {
        Note();
        name = "note";
    } else if (choice < 96) {
        Import();
        name = "import";
    } else {
        EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Done);
        ++wanted;
        model.Compact();
        name = "compact";
    }
    ++done[name];
}

void SavegameWalk::Check() {
    SaveMap slots, archived, kept = Contents(Repeated());
    Show({}, model.slots, slots);
    for (const auto& [folder, saves] : model.folders)
        Show("slot" + std::to_string(folder) + "/", saves, archived);
    SaveMap found = Contents(Archived());
    found.erase("savegames.trs");
    const SaveMap in_slots = InSlots();
    EXPECT_EQ(in_slots, slots);
    EXPECT_EQ(found, archived);
    std::multiset<std::string> expected;
    for (const ModelSave& save : model.repeated) {
        expected.insert(std::to_string(save.number) + save.id);
        if (!save.note.empty()) expected.insert(save.note + "\r\n");
    }
    for (const std::string& note : model.repeated_notes)
        expected.insert(note + "\r\n");
    std::multiset<std::string> there;
    for (const auto& [name, what] : kept)
        there.insert(what);
    EXPECT_EQ(there, expected);
    ExpectNothingMoving();
    for (const SaveMap& map : {in_slots, found})
        for (const auto& [name, what] : map)
            there.insert(what);
    for (const std::string& id : alive)
        EXPECT_EQ(there.count(id) > 0, true) << id << " is lost";
    for (const std::string& note : notes)
        EXPECT_EQ(there.count(note + "\r\n") > 0, true) << note << " is lost";
}

// Each walk of its own, so that they run side by side.
TEST_P(SavegameWalk, IsWhatTheModelSays) {
    constexpr int kWanted = 510; // of four walks
    for (int step = 1; wanted < kWanted && step <= 3 * kWanted && !HasFailure(); ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        Step();
        Check();
    }
    for (const auto& [name, count] : done)
        std::cout << "  " << count << " x " << name << "\n";
    std::cout << "  " << wanted << " operations had something to do\n";
    EXPECT_GE(wanted, kWanted);
    EXPECT_EQ(done.size(), 10U);
    EXPECT_GT(model.repeated.size(), 0U) << "no number has met itself";
}

INSTANTIATE_TEST_SUITE_P(Walks, SavegameWalk, testing::Values(1, 2, 3, 4));

} // namespace
} // namespace kelvash::companion
