#include "support/linked_tree.h"

#include <cstdlib>
#include <string>

namespace kelvash::test {

namespace fs = std::filesystem;

fs::path FastFolder(const fs::path& otherwise) {
    std::string name = "/dev/shm/kelvash-test-XXXXXX";
    return mkdtemp(name.data()) != nullptr ? fs::path(name) : otherwise;
}

void LinkTree(const fs::path& from, const fs::path& to) {
    fs::create_directories(to);
    for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
        const fs::path target = to / entry.path().filename();
        if (entry.is_symlink())
            fs::copy_symlink(entry.path(), target);
        else if (entry.is_directory())
            LinkTree(entry.path(), target);
        else if (entry.path().extension() == ".new")
            fs::copy_file(entry.path(), target);
        else
            fs::create_hard_link(entry.path(), target);
    }
}

} // namespace kelvash::test
