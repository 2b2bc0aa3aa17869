#include "support/foundation_home.h"

#include <fstream>
#include <iterator>

#include "foundation/drives.h"
#include "foundation/messages.h"
#include "foundation/state.h"
#include "support/pump_clock.h"

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

// A read-only file can't be removed everywhere.
void RemoveAll(const fs::path& root) {
    std::error_code error;
    for (fs::recursive_directory_iterator at(root, error), end; !error && at != end; at.increment(error))
        if (!at->is_symlink())
            fs::permissions(at->path(), fs::perms::owner_all, fs::perm_options::add, error);
    fs::remove_all(root, error);
}

} // namespace

FoundationHome::FoundationHome() : root(MakeTemporaryFolder()), drive(root / "c"), home(drive / "Kelvash") {
    fs::create_directories(home);
    LiveBelow(root);
    ResetProgramState();
    SetPumpStep(std::chrono::milliseconds(0));
    MapDrives();
}

FoundationHome::~FoundationHome() {
    ResetProgramState();
    RemoveAll(root);
}

void FoundationHome::MapDrives() {
    EXPECT_TRUE(SetDrive('C', drive, DriveType::Fixed));
    EXPECT_TRUE(SetAppFolder(home));
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

bool Exists(const fs::path& path) {
    return fs::exists(fs::symlink_status(path));
}

} // namespace kelvash::test
