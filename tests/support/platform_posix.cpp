#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>

#include "support/built.h"
#include "support/platform.h"

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

constexpr unsigned kNobody = 65534;

fs::path& LastTemporaryFolder() {
    static fs::path folder;
    return folder;
}

void GiveAway(const fs::path& path) {
    if (lchown(path.c_str(), kNobody, kNobody) != 0) std::abort();
}

} // namespace

fs::path MakeTemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "kelvash-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    return LastTemporaryFolder() = fs::canonical(name);
}

fs::path Built(const fs::path& program) {
    return fs::read_symlink("/proc/self/exe").parent_path().parent_path() / program;
}

int Slowness() {
    return dlsym(RTLD_DEFAULT, "__asan_init") == nullptr ? 1 : 5;
}

void SetEnvironment(const std::string& name, const std::string& value) {
    if (setenv(name.c_str(), value.c_str(), 1) != 0) std::abort();
}

void LiveBelow(const fs::path& folder) {
    fs::create_directories(folder / "run");
    SetEnvironment("HOME", folder.string());
    SetEnvironment("XDG_DATA_HOME", (folder / "data").string());
    SetEnvironment("XDG_RUNTIME_DIR", (folder / "run").string());
    SetEnvironment("WINEPREFIX", (folder / "no-prefix").string());
}

std::uint64_t LinksOf(const fs::path& file) {
    return fs::hard_link_count(file);
}

OrdinaryUser::OrdinaryUser() {
    if (geteuid() != 0) return;
    GiveAway(LastTemporaryFolder());
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(LastTemporaryFolder()))
        GiveAway(entry.path());
    if (seteuid(kNobody) != 0) std::abort();
}

OrdinaryUser::~OrdinaryUser() {
    if (getuid() == 0 && seteuid(0) != 0) std::abort();
}

} // namespace kelvash::test
