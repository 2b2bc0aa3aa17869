// A TRLE folder at C:\Games\trle, and the form that asks for one.
#pragma once

#include "support/test_home.h"
#include "support/trle_sandbox.h"
#include "trle/find_trle.h"

namespace kelvash::trle {

class FindTrle : public test::TestHome {
  protected:
    FindTrle() { test::MakeTrle(drive / "Games" / "trle"); }
    void WillChoose(const std::string& folder) {
        user.WillFill<TrleFolderChoice>([folder](TrleFolderChoice& choice) {
            EXPECT_EQ(choice.Title, "Folder of Tomb Raider Level Editor");
            choice.Folder = folder;
            return true;
        });
    }
    // The form is left as it is.
    void WillAccept() {
        user.WillFill<TrleFolderChoice>([](TrleFolderChoice&) { return true; });
    }
    // A registry that names the room editor.
    void Register(const std::string& escaped_program) {
        test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
        test::MakeFile(root / "prefix" / "system.reg",
                       "WINE REGISTRY Version 2\n\n"
                       "[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\App Paths\\\\winroomedit.exe] "
                       "1700000000\n@=\"" +
                           escaped_program + "\"\n");
    }
};

} // namespace kelvash::trle
