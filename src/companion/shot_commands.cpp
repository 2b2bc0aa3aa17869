#include "companion/shot_commands.h"

#include <optional>

#include "companion/fragments.h"
#include "companion/settings.h"
#include "companion/shot_files.h"
#include "companion/shot_messages.h"
#include "companion/shot_names.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/date_text.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/native_text.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/process.h"
#include "foundation/text.h"
#include "foundation/tool.h"
#include "foundation/user.h"

namespace kelvash::companion {

namespace {

bool Refuse(const MessageText& text) {
    ShowMessage(MessageStyle::Exclamation, text);
    return false;
}

// False, after a message, for a picture that isn't there.
bool IsThere(const std::string& path) {
    return FileExists(path) || Refuse(LoadMessage(msg::kShotGone) + path);
}

// Asks for the program once; empty if it isn't chosen.
std::string GraphicsProgram() {
    const std::string known(Trim(core::profile.GraphicsProgram));
    if (!known.empty()) return known;
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kShotNoEditor, {kLineBreak}));
    Settings settings = BeginSettings();
    ChooseGraphicsProgram(settings);
    core::profile.GraphicsProgram = settings.Edited.GraphicsProgram;
    return std::string(Trim(core::profile.GraphicsProgram));
}

// Where an added picture goes.
std::string PlaceForNew(const core::LevelPlace& level, const std::string& source) {
    const std::string name = FileNameOf(source);
    const std::string path = NamedShotPath(level, name, ExtensionOf(name));
    if (path.empty()) return NextShotPath(level, ExtensionOf(name));
    if (!FileExists(path)) return path;
    return AskYesNo(MessageStyle::Question,
                    LoadMessageOfOthers(msg::kShotExists, {name, kLineBreak, kLineBreak}))
               ? path
               : NextShotPath(level, ExtensionOf(name));
}

// A name that only changes its case is found as the old one: it goes by another.
bool Rename(const core::LevelPlace& level, const std::string& path, const std::string& renamed) {
    if (!EqualNoCase(path, renamed) || HasExactly(renamed)) return RenameFile(path, renamed);
    const std::string between = NextShotPath(level, ExtensionOf(path));
    if (!RenameFile(path, between)) return false;
    if (RenameFile(between, renamed)) return true;
    RenameFile(between, path);
    return false;
}

bool WriteAs(const core::LevelPlace& level, const std::string& path, const std::string& target) {
    if (IsSameShot(path, target)) return true; // by a link, whatever the two are called
    if (EqualNoCase(ExtensionOf(path), ExtensionOf(target))) return CopyShot(level, path, target);
    const std::optional<swap::Picture> picture = ReadShot(path);
    if (!picture) return false;
    const bool is_jpeg = EndsWithNoCase(target, LoadFragment(fragment::kShotAsJpeg));
    const std::optional<std::string> bytes =
        is_jpeg ? swap::JpegFromPicture(*picture, swap::kBestQuality) : swap::BitmapFromPicture(*picture);
    return bytes && StoreShot(level, target, *bytes, FileTime(path));
}

} // namespace

bool AddScreenshot(std::int32_t code, std::string& added) {
    const core::Change change(msg::kDoingAddShot, LocksOfShots(code), code);
    if (!change || !change.Level().IsListed()) return false;
    const std::optional<std::string> source =
        TheUser().OpenFile({LoadMessage(msg::kAddShotTitle), LoadMessage(msg::kAddShotFilter), {}, {}});
    if (!source) return false;
    if (!IsShotName(*source)) return Refuse(LoadMessage(msg::kAddShotKind) + *source);
    if (!ReadShotOrTell(*source)) return false;
    added = PlaceForNew(change.Level(), *source);
    if (!CopyShot(change.Level(), *source, added)) {
        TellCritical(LoadMessage(msg::kAddShotFailed) + added);
        return false;
    }
    ShowMessage(MessageStyle::Plain, LoadMessageOfOthers(msg::kAddShotDone, {FileNameOf(*source)}) + added);
    return true;
}

void TellHowToCapture() {
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kShotCapture, {kLineBreak}));
}

void CopyShotPath(const std::string& path, const CopyText& copy) {
    if (!IsThere(path)) return;
    const std::string native = TextOfNative(NativePath(path));
    copy(native);
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kShotPathCopied, {native + kLineBreak}));
}

bool OpenShotEditor(const std::string& path) {
    if (IsDefaultShot(path)) return Refuse(LoadMessage(msg::kDefaultEdit));
    if (!IsThere(path)) return false;
    const std::string program = GraphicsProgram();
    if (program.empty()) return false;
    Process process;
    const bool runs = RunNoWait(program, {PathFor(program, path)}, process, Window::Normal) > 0;
    if (!runs) TellCritical(LoadMessage(msg::kShotEditorFailed) + program);
    ReleaseProcess(process);
    return runs;
}

void ShowShotProperty(const std::string& path) {
    if (IsDefaultShot(path)) {
        Refuse(LoadMessage(msg::kShotNoProperty));
        return;
    }
    if (!IsThere(path)) return;
    const std::optional<swap::Picture> picture = ReadShotOrTell(path);
    if (!picture) return;
    const std::string date = FormatDate(LoadFragment(fragment::kShotDatePattern), FileTime(path).value_or(0));
    ShowMessage(MessageStyle::Plain,
                LoadMessageOfOthers(msg::kShotProperty, {path + kLineBreak, date + kLineBreak,
                                                         FormatSize(FileSize(path)) + kLineBreak,
                                                         std::to_string(picture->Width)}) +
                    std::to_string(picture->Height) + ")");
}

bool DeleteShot(std::int32_t code, const std::string& path) {
    if (IsDefaultShot(path)) return Refuse(LoadMessage(msg::kDefaultDelete));
    const core::Change change(msg::kDoingDeleteShot, LocksOfShots(code), code);
    if (!change || !IsThere(path)) return false;
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kShotDelete) + FileNameOf(path))) return false;
    const std::int64_t size = FileSize(path);
    if (!DeleteFile(path)) {
        TellCritical(LoadMessage(msg::kShotDeleteFailed) + path);
        return false;
    }
    AddImageToLevel(-size, change.Level());
    return true;
}

bool RenameShot(std::int32_t code, std::string& path) {
    if (IsDefaultShot(path)) return Refuse(LoadMessage(msg::kDefaultRename));
    const core::Change change(msg::kDoingRenameShot, LocksOfShots(code), code);
    if (!change || !IsThere(path)) return false;
    const core::LevelPlace& level = change.Level();
    const std::optional<std::string> typed =
        TheUser().Input(LoadMessage(msg::kShotRenameTitle), LoadMessage(msg::kShotRename), FileNameOf(path));
    if (!typed) return false;
    const std::string renamed = NamedShotPath(level, *typed, ExtensionOf(path));
    if (renamed.empty()) return Refuse(LoadMessage(msg::kShotBadName) + *typed);
    if (renamed == path) return true;
    const bool replaces = EqualNoCase(path, renamed) ? HasExactly(renamed) : FileExists(renamed);
    // A link would take the place of what it leads to.
    if (replaces && IsSameShot(path, renamed)) return Refuse(LoadMessage(msg::kShotSameFile) + renamed);
    const std::int64_t replaced = replaces ? FileSize(renamed) : 0;
    if (replaces && !AskReplaceFile(path, renamed)) return false;
    if (!Rename(level, path, renamed)) {
        TellCritical(LoadMessage(msg::kShotRenameFailed) + renamed);
        return false;
    }
    AddImageToLevel(-replaced, level);
    path = renamed;
    return true;
}

bool SaveShotAs(std::int32_t code, const std::string& path) {
    if (IsDefaultShot(path)) return Refuse(LoadMessage(msg::kDefaultSave));
    const core::Change change(msg::kDoingSaveShot, LocksOfShots(code), code);
    if (!change || !IsThere(path)) return false;
    const std::optional<std::string> chosen =
        TheUser().SaveFile({LoadMessage(msg::kSaveShotTitle), LoadMessage(msg::kSaveShotFilter),
                            FolderOf(path), FileNameOf(path)});
    if (!chosen) return false;
    std::string target = *chosen;
    if (!IsShotName(target)) {
        target += ExtensionOf(path);
        if (FileExists(target) && !IsSameShot(path, target) && !AskReplaceFile(path, target)) return false;
    }
    if (WriteAs(change.Level(), path, target)) return true;
    TellCritical(LoadMessage(msg::kSaveShotFailed, {path}) + target);
    return false;
}

} // namespace kelvash::companion
