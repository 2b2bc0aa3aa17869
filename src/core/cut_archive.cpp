#include "core/cut_archive.h"

#include "core/archive_messages.h"
#include "core/fragments.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place_file.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace {

// True if the copy is there, under the name that `copy` takes.
bool CopyBeside(const std::string& path, std::string& copy) {
    const std::string first = path + LoadFragment(fragment::kCutArchiveExtension);
    copy = first;
    for (int number = 2; AnythingStands(copy); ++number) {
        if (StampOf(copy) == StampOf(path)) return true;
        copy = first + std::to_string(number);
    }
    return CopyFileNew(path, copy);
}

} // namespace

void KeepCutArchive(const std::string& path, const ArchiveContents& contents) {
    std::string copy;
    const bool is_kept = CopyBeside(path, copy);
    ShowMessage(MessageStyle::Exclamation,
                LoadMessage(is_kept ? msg::kArchiveCut : msg::kArchiveCutNotKept,
                            {FileNameOf(path), std::to_string(contents.Whole),
                             std::to_string(contents.Stated), FileNameOf(copy), kLineBreak, kLineBreak}));
}

} // namespace kelvash::core
