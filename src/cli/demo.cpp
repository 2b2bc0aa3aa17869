#include "cli/demo.h"

#include <algorithm>
#include <array>
#include <fstream>

#include "cli/demo_files.h"
#include "cli/demo_levels.h"
#include "cli/demo_zip.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "core/archive.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/native_text.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "program/start_up.h"
#include "swap/backup.h"
#include "swap/picture.h"
#include "swap/zl_file.h"

namespace kelvash::cli {

namespace fs = std::filesystem;

namespace {

bool Refuse(MessageId id, const std::string& behind) {
    TellCritical(LoadMessage(id) + behind);
    return false;
}

bool WriteFile(const std::string& path, const std::string& bytes) {
    return ReplaceFileBytes(path, bytes, Flush::No) || Refuse(msg::kCliDemoCannotWrite, path);
}

bool MakeFolder(const std::string& path) {
    return CreateFolder(path) || Refuse(msg::kCliDemoCannotWrite, path);
}

bool IsEmptyOrMissing(const fs::path& folder) {
    std::error_code error;
    return !fs::exists(fs::symlink_status(folder, error)) || (fs::is_empty(folder, error) && !error);
}

bool MakeNativeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    return !error || Refuse(msg::kCliDemoCannotWrite, TextOfNative(folder));
}

// The home with its drive, so that the paths in its files hold wherever the sandbox lies.
bool TakeSandbox(const fs::path& drive, const Sandbox& sandbox) {
    if (!MakeNativeFolder(sandbox.home)) return false;
    std::ofstream drives(sandbox.home / "drives.txt");
    drives << "C=" << TextOfNative(drive) << '\n';
    drives.close();
    return (drives.good() && SetAppFolder(sandbox.home)) ||
           Refuse(msg::kCliDemoCannotWrite, TextOfNative(sandbox.home));
}

bool MakeTrle(const Sandbox& sandbox) {
    const std::string trle = DosPath(sandbox.trle);
    for (const std::string& folder : TrleFolders())
        if (!MakeFolder(trle + "\\" + folder)) return false;
    for (const auto& [name, content] : TrleFiles())
        if (!WriteFile(trle + "\\" + name, content)) return false;
    std::error_code error;
    const fs::path game = sandbox.trle / "tomb4.exe";
    fs::copy_file(StandInGame(), game, error);
    return !error || Refuse(msg::kCliDemoCannotWrite, TextOfNative(game));
}

// Brings a level's files into the forms that an Archive with compression keeps.
bool CompressFolder(const std::string& folder) {
    for (const char* mask : {"*.tr4", "*.wav"})
        for (const std::string& file : ListFiles(folder, mask))
            if (!swap::CompressFile(file, file + ".zl") || !DeleteFile(file)) return false;
    return swap::BitmapToJpeg(folder + "\\load.bmp", folder + "\\load.jpg") &&
           DeleteFile(folder + "\\load.bmp");
}

bool AddLevel(const DemoLevel& level) {
    const std::string folder = core::LevelFolder(level.record.Code, false);
    if (!core::CreateLevelFolders(folder)) return Refuse(msg::kCliDemoCannotWrite, folder);
    for (const auto& [name, content] : level.files)
        if (!WriteFile(core::FilesFolder(folder) + "\\" + name, content)) return false;
    for (const auto& [name, content] : level.saves)
        if (!WriteFile(core::StashFolder(folder) + "\\" + name, content)) return false;
    int number = 0;
    for (const unsigned seed : level.shots) {
        const std::string name = std::to_string(++number) + ") " + level.record.Name + ".bmp";
        if (!WriteFile(core::ScreenshotsFolder(folder) + "\\" + name, LandscapeBitmap(seed))) return false;
    }
    if (level.compressed && !CompressFolder(core::FilesFolder(folder)))
        return Refuse(msg::kCliDemoCannotWrite, folder);
    core::archive.Table.Append(level.record);
    return true;
}

core::LevelRecord LevelZero() {
    core::LevelRecord level = core::LevelZero();
    level.MoreInfoFile = "manual.pdf";
    return level;
}

bool MakeArchive(const std::string& folder) {
    if (!MakeFolder(folder)) return false;
    core::archive = core::ArchiveState();
    core::archive.Header.MainFolder = folder;
    core::archive.Header.SecondaryFolder = folder;
    core::archive.Table = {LevelZero()};
    for (const DemoLevel& level : ArchiveLevels())
        if (!AddLevel(level)) return false;
    core::profile.LastArchive = core::DefaultArchivePath();
    core::ComputeArchiveSize(core::Report::Silent);
    return FileExists(core::profile.LastArchive);
}

bool MakeZips(const fs::path& folder) {
    for (const DemoLevel& level : ZippedLevels()) {
        const fs::path zip = folder / NativeFromText(level.record.Name + ".zip");
        if (!WriteZip(zip, level.files)) return Refuse(msg::kCliDemoCannotWrite, TextOfNative(zip));
    }
    return true;
}

} // namespace

fs::path StandInGame() {
    const fs::path own = platform::ExecutablePath();
    fs::path name = "standin-game";
    name += own.extension(); // a program's, as this system has it
    const fs::path program = own.parent_path();
    const std::array<fs::path, 2> places = {(program / ".." / "share" / "kelvash" / name).lexically_normal(),
                                            program / name};
    std::error_code error;
    const auto* const found = std::find_if(places.begin(), places.end(), [&](const fs::path& place) {
        return fs::is_regular_file(place, error);
    });
    return found == places.end() ? places.front() : *found;
}

bool MakeSandbox(const fs::path& folder, SandboxState state, Sandbox& sandbox) {
    std::error_code error;
    if (!fs::is_regular_file(StandInGame(), error))
        return Refuse(msg::kCliNoStandIn, TextOfNative(StandInGame()));
    if (!IsEmptyOrMissing(folder)) return Refuse(msg::kCliFolderNotEmpty, TextOfNative(folder));
    if (!MakeNativeFolder(folder / "drive_c")) return false;
    const fs::path drive = fs::canonical(folder / "drive_c", error);
    sandbox = {drive / "Kelvash", drive / "Program Files" / "Core Design" / "trle", drive / "zips"};
    if (!TakeSandbox(drive, sandbox) || !MakeNativeFolder(sandbox.trle) || !MakeNativeFolder(sandbox.zips) ||
        !MakeTrle(sandbox) || !MakeZips(sandbox.zips))
        return false;
    core::profile = core::ProfileRecord();
    core::profile.TrleFolder = DosPath(sandbox.trle);
    core::profile.DownloadFolder = DosPath(sandbox.zips);
    if (state == SandboxState::Untouched) return MakeArchive(DosPath(drive / "Levels"));
    if (!swap::CreateBackup(false)) return false;
    if (!program::CreateLevelZero()) return Refuse(msg::kCliDemoNoLevelZero, {});
    if (!MakeArchive(DosPath(drive / "Levels"))) return false;
    if (core::WriteProfile()) return true;
    TellProfileNotSaved();
    return false;
}

} // namespace kelvash::cli
