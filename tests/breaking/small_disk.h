// Places where writing fails: a small file system of its own, and folders that nobody may write.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace kelvash::test {

// A file system of some bytes on a folder, which only processes see that enter it. It needs no rights beyond
// those of a user, but a kernel that lets users make namespaces.
class SmallDisk {
  public:
    // What the folder held is on it. `WhyNot` says what failed.
    SmallDisk(const std::filesystem::path& folder, std::uint64_t bytes);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool Stands() const { return keeper_ > 0; }
    // For a new process: lets it see the disk.
    bool Enter() const;
    // Does something where the disk is seen, in a process of its own; gives its result.
    int Inside(const std::function<int()>& work) const;

  private:
    pid_t keeper_ = -1;
};

// For a new process: it obeys permissions though it is root's.
bool ObeyPermissions();

} // namespace kelvash::test
