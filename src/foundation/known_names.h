// The names of a folder that many files are about to be put into.
//
// A name is found without regard to case, so that a name which a disk lacks costs a look at the whole folder
// where the disk has regard to it; thousands of new files in one folder would take a time that grows with the
// square of their number. While a KnownNames lives, names of its folder are looked up in memory.
#pragma once

#include <filesystem>
#include <string_view>

namespace kelvash {

// Holds for the thread that made it. Files that another program puts there meanwhile are found under their
// exact names only. Scopes over one folder nest.
class KnownNames {
  public:
    explicit KnownNames(std::string_view folder);
    ~KnownNames();
    KnownNames(const KnownNames&) = delete;
    KnownNames& operator=(const KnownNames&) = delete;

  private:
    std::filesystem::path folder_;
};

} // namespace kelvash
