// A level with savegames in its slots and in its archive, on which one operation is cut short or fails at
// each of its calls in turn.
#pragma once

#include <functional>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include "companion/archive_slots.h"
#include "companion/compact_slots.h"
#include "companion/restore_slots.h"
#include "companion/savegame_commands.h"
#include "companion/savegame_notes.h"
#include "companion/savegame_transfer.h"
#include "support/savegame_home.h"
#include "support/traced_run.h"
#include "swap/install.h"
#include "swap/moved_saves.h"

namespace kelvash::test {

enum class Where { InStash, InTrle };

struct SavegameOperation {
    std::string name;
    std::function<companion::SlotsOutcome()> run;
    std::set<std::string> may_go = {}; // savegames and notes that it deletes
    bool renumbers = true;
    bool from_full = false; // begins with full slots
};

class SavegameFaultsHome : public SavegameHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
        user.MayAnswer("Delete savegame [", "yes");
        user.MayAnswer("All Tomb Raider slots are full", "yes");
        user.MayBeTold("");
    }

    std::filesystem::path SlotsNow() const { return where == Where::InTrle ? trle : Slots(); }

    // The start of every run: odd and plain savegames, notes, twins in the archive and none.
    void Arrange(const SavegameOperation& operation) {
        Arrange();
        for (int slot = 6; operation.from_full && slot < 17; ++slot)
            MakeFile(SlotsNow() / ("savegame." + std::to_string(slot)),
                     SaveBytes("City", 100, std::to_string(slot)));
    }
    void Arrange() {
        namespace fs = std::filesystem;
        for (const fs::path& folder :
             {Slots(), Archived(), Repeated(), home / "_temp_savegame", drive / "out"})
            fs::remove_all(folder);
        fs::remove(home / "moved_saves.rec");
        for (const fs::directory_entry& entry : fs::directory_iterator(home))
            if (entry.path().filename().string().starts_with("rescued_saves_")) fs::remove_all(entry.path());
        for (const fs::path& file : GamesFiles())
            fs::remove(file);
        fs::create_directories(Slots());
        fs::create_directories(Archived());
        fs::create_directories(drive / "out");
        const auto put = [this](const std::string& name, int number, const std::string& id) {
            MakeFile(SlotsNow() / name, SaveBytes("City", number, id));
        };
        put("savegame.1", 7, "seven");
        put("savegame.4", 3, "three");
        put("savegame.5", 9, "nine");
        put("savegame.bak", 4, "odd");
        PutNote(SlotsNow(), 4, "note of three");
        PutNote(SlotsNow(), 5, "note of nine");
        PutNote(SlotsNow(), 0, "lone note");
        PutArchived(1, 0, 9, "nine"); // a twin
        PutNote(Archived() / "slot1", 0, "another note of nine");
        PutArchived(1, 1, 7, "another seven");
        PutNote(Archived() / "slot1", 1, "note of another seven");
        PutArchived(1, 2, 5, "five");
        PutNote(Archived() / "slot1", 2, "note of five");
    }

    // Savegames and notes of the game's folder.
    std::vector<std::filesystem::path> GamesFiles() const {
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator(trle)) {
            const std::string name = entry.path().filename().string();
            if (!name.ends_with(".new") && (name.starts_with("savegame.") || name.starts_with("note")))
                files.push_back(entry.path());
        }
        return files;
    }

    // Everything that the lists show, or that lies where a person is told of: savegames by what is in them,
    // notes by their text.
    std::multiset<std::string> Everything() const {
        std::multiset<std::string> found;
        for (const std::filesystem::path& file : GamesFiles())
            found.insert(What(file));
        for (const std::filesystem::path& folder : {Slots(), Archived(), Repeated(), drive / "out"})
            for (const auto& [name, what] : Contents(folder))
                if (!name.ends_with("Kelvash.tmp") && !name.ends_with(".new")) found.insert(what);
        return found;
    }
    static std::string What(const std::filesystem::path& file) {
        const std::string bytes = BytesOf(file);
        if (file.filename().string().starts_with("note") || bytes.size() < 77) return bytes;
        return std::to_string(static_cast<unsigned char>(bytes[75])) + bytes.substr(77);
    }

    // Nothing of what stood at the start is missing, and nothing is half there.
    void ExpectAll(const std::set<std::string>& may_go) const {
        const std::multiset<std::string> found = Everything();
        const std::set<std::string> all = {"7seven",
                                           "3three",
                                           "9nine",
                                           "4odd",
                                           "7another seven",
                                           "5five",
                                           "note of three",
                                           "note of nine",
                                           "lone note",
                                           "another note of nine",
                                           "note of another seven",
                                           "note of five"};
        for (const std::string& what : all)
            EXPECT_TRUE(found.count(what) > 0 || may_go.count(what) > 0) << what << " is lost";
        for (const std::string& what : found)
            EXPECT_TRUE(all.count(what) > 0 || what.starts_with("100") || what.size() == 1030)
                << "rubbish: " << what;
    }
    // The notes are with their savegames wherever these are.
    void ExpectPairs(const std::set<std::string>& may_go) const {
        for (const auto& [save, note] :
             {std::pair<std::string, std::string>{"3three", "note of three"}, {"5five", "note of five"}}) {
            if (may_go.count(save) > 0) continue;
            bool together = false;
            for (const std::filesystem::path& folder : {SlotsNow(), Archived(), Repeated(), drive / "out"})
                for (const auto& [name, what] : Contents(folder)) {
                    if (what != save) continue;
                    const std::filesystem::path path = folder / name;
                    const std::string slot = path.extension().string().substr(1);
                    const std::filesystem::path beside = path.parent_path() / ("note" + slot + ".txt");
                    together = together || (Exists(beside) && BytesOf(beside) == note);
                }
            EXPECT_TRUE(together) << note << " has left " << save;
        }
    }

    std::vector<SavegameOperation> Operations() {
        using namespace companion;
        MakeFile(drive / "in/savegame.0", SaveBytes("City", 100, "imported"));
        const std::string archived = "C:\\Levels\\LEVEL_0001\\savegames\\slot1\\savegame.2";
        return {{"archive two", [] { return ArchiveSlots(1, 2, Asker::Watcher); }},
                {"archive all", [] { return ArchiveSlots(1, 15, Asker::User); }},
                {"restore last", [] { return RestoreLastSlot(1, Asker::Watcher); }},
                {"compact", [] { return CompactSlots(1, Asker::User); }},
                {"to slots", [=] { return RestoreToSlots(1, archived); }},
                {"import", [] { return ImportSavegames(1, {"C:\\in\\savegame.0"}); }, {}, false},
                {"to full slots", [=] { return RestoreToSlots(1, archived); }, {}, true, true},
                {"import into full slots",
                 [] { return ImportSavegames(1, {"C:\\in\\savegame.0"}); },
                 {},
                 true,
                 true},
                {"note",
                 [this] {
                     const bool done = WriteNote(SlotText() + "\\savegame.5", "100 words");
                     return SlotsOutcome{done ? SlotsResult::Done : SlotsResult::Refused};
                 },
                 {"note of nine"},
                 false},
                {"export and delete",
                 [=, this] {
                     return ExportSavegames(1, {SlotText() + "\\savegame.4", archived}, "C:\\out",
                                            Sources::Delete);
                 },
                 {},
                 false},
                {"delete",
                 [this] { return AskDeleteSavegame(1, SlotText() + "\\savegame.4"); },
                 {"3three", "note of three"}}};
    }
    std::string SlotText() const {
        return where == Where::InTrle ? "C:\\trle" : "C:\\Levels\\LEVEL_0001\\backup_savegames";
    }

    // From one fault to the next. The slots in TRLE, and full ones, take the same roads as those of the
    // stash: each third call of theirs is met.
    int Step(const SavegameOperation& operation) const {
        return where == Where::InTrle || operation.from_full ? 3 : 1;
    }

    // On another drive than the application's folder nothing can be linked.
    FaultPlan Plan(Fault fault, int at, int error = 0, bool lasting = false) const {
        FaultPlan plan{fault, at, error, lasting};
        plan.no_links = no_links;
        return plan;
    }

    Where where = Where::InStash;
    bool no_links = false;
};

} // namespace kelvash::test
