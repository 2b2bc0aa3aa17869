#include "support/intake_home.h"

#include "core/archive.h"
#include "foundation/drives.h"
#include "foundation/native_text.h"
#include "intake/level_config.h"
#include "support/zip_program.h"

namespace kelvash::test {

namespace fs = std::filesystem;

fs::path IntakeHome::MakeZip(const std::string& path, const Files& files, const std::string& password) {
    const fs::path zip = drive / NativeFromText(path);
    const fs::path staging = root / "staging";
    fs::remove_all(staging);
    fs::create_directories(staging);
    fs::create_directories(zip.parent_path());
    for (const auto& [name, bytes] : files)
        MakeFile(staging / NativeFromText(name), bytes);
    EXPECT_TRUE(MakeZipOf(staging, zip, password)) << zip;
    fs::remove_all(staging);
    return zip;
}

std::string IntakeHome::ConfigBytes() {
    return intake::EncodeLevelConfig(intake::LevelConfig);
}

void IntakeHome::OpenNew(const Files& files) {
    AddLevel(1, "", files);
    intake::BeginNewLevel(level, core::PlaceAt(1), {});
}

void IntakeHome::WillWork(const std::function<void(intake::NewLevel&)>& work) {
    user.WillFill<intake::NewLevel>([work](intake::NewLevel& open) {
        work(open);
        return open.State == intake::FormState::Saved;
    });
}

const core::LevelRecord& IntakeHome::Record() const {
    return core::archive.Table[level.Level.Index];
}

fs::path IntakeHome::Work() const {
    return NativePath(level.WorkFolder);
}

std::vector<std::string> IntakeHome::WorkNames() const {
    return NamesIn(Work());
}

std::vector<std::string> IntakeHome::StoredNames(std::int32_t code) const {
    return NamesIn(LevelPath(code) / "FILES");
}

} // namespace kelvash::test
