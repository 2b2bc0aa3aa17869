#include "support/test_home.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "core/start_up.h"
#include "foundation/drives.h"

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

constexpr unsigned kNobody = 65534;

fs::path MakeTemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "kelvash-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    return fs::canonical(name);
}

} // namespace

TestHome::TestHome() : root(MakeTemporaryFolder()), drive(root / "c"), home(drive / "Kelvash") {
    fs::create_directories(home);
    setenv("HOME", root.c_str(), 1);
    setenv("XDG_DATA_HOME", (root / "data").c_str(), 1);
    setenv("WINEPREFIX", (root / "no-prefix").c_str(), 1);
    core::ResetProgramState();
    EXPECT_TRUE(SetDrive('C', drive, DriveType::Fixed));
    EXPECT_TRUE(SetAppFolder(home));
}

TestHome::~TestHome() {
    core::ResetProgramState();
    std::error_code error;
    fs::remove_all(root, error);
}

void MakeFile(const fs::path& path, std::string_view bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.good()) << path;
}

std::string BytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

bool Exists(const fs::path& path) { return fs::exists(fs::symlink_status(path)); }

OrdinaryUser::OrdinaryUser() {
    if (geteuid() == 0 && seteuid(kNobody) != 0) std::abort();
}

OrdinaryUser::~OrdinaryUser() {
    if (getuid() == 0 && seteuid(0) != 0) std::abort();
}

} // namespace kelvash::test
