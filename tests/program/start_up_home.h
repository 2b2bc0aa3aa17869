// The start of the program: a TRLE folder at C:\trle, and the world of a later run for who wants one.
#pragma once

#include <string>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/session.h"
#include "support/test_home.h"
#include "support/trle_sandbox.h"
#include "trle/find_trle.h"

namespace kelvash::test {

inline constexpr const char* kOriginal = "Kelvash needs the original Tomb Raider Level Editor files";
inline constexpr const char* kFull = "Do you want a full backup?";
inline constexpr const char* kNewFolder = "Select main folder for new archive";
inline constexpr const char* kDifferent = "Do you want load a different archive?";
inline constexpr const char* kLoad = "Load Tomb Raider Level Archive";
inline constexpr const char* kUpgrade =
    "Warning: in previous version 1.3, there was a bug in remove level files phase. Now, it should be "
    "necessary perform a full restore in trle folder to remove multiple files\r\nExecute now a full "
    "restore?";

class StartUpHome : public TestHome {
  protected:
    StartUpHome() {
        MakeTrle(trle);
        std::filesystem::create_directories(drive / "Levels");
        record.TrleFolder = "C:\\trle";
        record.LastArchive = "C:\\Kelvash\\last.kva";
    }

    // The world of a later run: a profile, a backup, level 0000 and an Archive whose folders are `folder`.
    void LiveIn(const std::string& folder = "C:\\Levels") {
        MakeFile(home / "Kelvash.prf", core::EncodeProfile(record));
        std::filesystem::copy(trle, home / "backup_trle", std::filesystem::copy_options::recursive);
        std::filesystem::create_directories(home / "LEVEL_0000" / "FILES");
        MakeArchive("last.kva", folder);
    }
    // An Archive with level 0000 and level 5.
    void MakeArchive(const std::string& name, const std::string& folder) {
        std::string bytes(546, '\0');
        bytes[0] = 1;
        bytes.replace(4, 512, std::string(512, ' '));
        bytes.replace(4, folder.size(), folder);
        bytes.replace(260, folder.size(), folder);
        bytes[516] = 2;
        for (const char code : {'\0', '\5'}) {
            std::string level(1634, ' ');
            level.replace(0, 6, "Level ");
            level.replace(1360, 8, std::string(8, '\0'));
            level[1360] = code;
            level.replace(1624, 10, std::string(10, '\0'));
            bytes += level;
        }
        MakeFile(home / name, bytes);
    }
    void WillFindTrle() {
        user.WillFill<trle::TrleFolderChoice>([](trle::TrleFolderChoice& choice) {
            EXPECT_EQ(choice.Title, "Folder of Tomb Raider Level Editor");
            choice.Folder = "C:\\trle";
            return true;
        });
    }
    // The form of a start without an Archive.
    void WillChooseToMakeOne(bool make) {
        user.WillFill<program::FirstArchiveChoice>([make](program::FirstArchiveChoice& choice) {
            EXPECT_EQ(choice.Title, " First execution: Missing last archive");
            choice.MakeNew = make;
            return true;
        });
    }
    void WillMakeAFirstArchive() {
        WillFindTrle();
        user.WillAnswer(kOriginal, "yes");
        user.WillAnswer(kFull, "no");
        WillChooseToMakeOne(true);
        user.WillAnswer(kNewFolder, "C:\\Levels");
    }
    void ExpectNoArchive() {
        EXPECT_FALSE(core::ArchiveIsOpen());
        EXPECT_EQ(core::archive.Table.Size(), 0);
        EXPECT_FALSE(core::archive.ArchiveChanged);
        EXPECT_TRUE(core::level_list.Items.empty());
    }

    std::filesystem::path trle = drive / "trle";
    core::ProfileRecord record;
};

} // namespace kelvash::test
