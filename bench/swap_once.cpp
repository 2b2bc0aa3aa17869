// swap_once HOME CODE: one start of the program that swaps one level in, for run.sh.
#include <cstdlib>
#include <iostream>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "swap/install.h"

int main(int argc, char** argv) {
    if (argc != 3 || !kelvash::SetAppFolder(argv[1])) return 2;
    kelvash::core::LoadProfile();
    if (!kelvash::core::LoadArchive(kelvash::core::profile.LastArchive)) return 2;
    return kelvash::swap::InstallLevel(std::atoi(argv[2])) ? 0 : 1;
}
