// The open Archive against its file, which other programs may have written.
#include "core/archive.h"
#include "core/change_messages.h"
#include "core/fragments.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/date_text.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace {

// A file that is gone has been written by nobody.
bool IsStale(std::string_view path) {
    if (!EqualNoCase(archive.SeenFile, path)) return false;
    const std::optional<ArchiveStamp> now = StampOf(path);
    return now && *now != archive.Seen;
}

// Both of them, by the number of levels and what is known of their age.
bool AskOverwrite(const std::string& path) {
    ArchiveContents other;
    static_cast<void>(ReadArchiveFile(path, other)); // one that can't be read has no levels
    const std::string date =
        FormatDate(LoadFragment(fragment::kStaleDatePattern), FileTime(path).value_or(0));
    const std::string seen = FormatDate(LoadFragment(fragment::kStaleSeenPattern), archive.SeenTime);
    return AskYesNo(
        MessageStyle::Exclamation,
        LoadMessageOfOthers(msg::kStaleQuestion,
                            {FileNameOf(path), kLineBreak, std::to_string(other.Table.Size()), date,
                             kLineBreak, std::to_string(archive.Table.Size()), seen, kLineBreak}));
}

} // namespace

void NoteSeenArchive(const std::string& path, const ArchiveStamp& stamp) {
    archive.SeenFile = path;
    archive.Seen = stamp;
    archive.SeenTime = FileTime(path).value_or(0);
}

bool RefreshArchive() {
    const std::string path = profile.LastArchive;
    if (archive.ArchiveChanged || !IsStale(path)) return false;
    ArchiveContents contents;
    ArchiveStamp stamp;
    // One without a level is no Archive that any program has left here: what is in memory is worth more.
    if (!ReadArchiveFile(path, contents, &stamp) || contents.Table.IsEmpty()) return false;
    static_cast<ArchiveContents&>(archive) = std::move(contents);
    NoteSeenArchive(path, stamp);
    RefreshLevelList();
    return true;
}

bool MayOverwriteArchive(std::string_view path) {
    const std::string target(path);
    return !IsStale(target) || AskOverwrite(target);
}

} // namespace kelvash::core
