// A TRLE folder with files of the user's own, and two levels.
#pragma once

#include "support/swap_home.h"
#include "swap/install.h"

namespace kelvash::swap {

class KeptFile : public test::SwapHome {
  protected:
    KeptFile() {
        user.MayBeTold("Files of the TRLE folder that the backup doesn't hold made way");
        AddLevel(1, "City",
                 {{"city.tr4", "CITY"},
                  {"script.dat", "city script"},
                  {"italian.dat", "city texts"},
                  {"045.wav", "city wave"},
                  {"load.bmp", "city picture"}});
        AddLevel(2, "Coast", {{"coast.tr4", "COAST"}});
    }
    // Bytes of the one file of that name below kept_files; empty if there is none.
    std::string Kept(const std::string& name) const {
        std::string bytes;
        if (test::Exists(home / "kept_files"))
            for (const std::filesystem::directory_entry& entry :
                 std::filesystem::recursive_directory_iterator(home / "kept_files"))
                if (entry.is_regular_file() && entry.path().filename() == name)
                    bytes += test::BytesOf(entry.path());
        return bytes;
    }
};

} // namespace kelvash::swap
