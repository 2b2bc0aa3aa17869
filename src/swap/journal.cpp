#include "swap/journal.h"

#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/marker.h"

namespace kelvash::swap {

namespace {

constexpr std::size_t kLongestJournal = std::size_t{8} << 20;

std::string JournalPath() {
    return AppFolder() + LoadMessage(MessageId::kJournalName, {});
}

std::string Line(MessageId tag, const std::string& value) {
    return LoadMessage(tag, {}) + value + "#" + kLineBreak;
}

} // namespace

std::optional<SwapJournal> ReadJournal() {
    const std::optional<std::string> text = ReadFileStart(JournalPath(), kLongestJournal);
    if (!text) return std::nullopt;
    const std::string owner = MarkerField(LoadMessage(MessageId::kJournalSavesOwner, {}), *text);
    const std::string folder = MarkerField(LoadMessage(MessageId::kJournalTrleFolder, {}), *text);
    if (owner.empty() || !EqualNoCase(folder, core::TrleFolder())) return std::nullopt;
    return SwapJournal{LeadingNumber(owner),
                       MarkerList(LoadMessage(MessageId::kMarkerOverwritten, {}), *text),
                       MarkerList(LoadMessage(MessageId::kMarkerCopied, {}), *text)};
}

bool WriteJournal(const SwapJournal& journal) {
    const std::string text = Line(MessageId::kJournalTrleFolder, core::TrleFolder()) +
                             Line(MessageId::kJournalSavesOwner, std::to_string(journal.SavesOwner)) +
                             Line(MessageId::kMarkerOverwritten, Join(journal.Overwritten, "|")) +
                             Line(MessageId::kMarkerCopied, Join(journal.Copied, "|"));
    if (ReplaceFileBytes(JournalPath(), text, Flush::No)) return true;
    TellCritical(LoadMessage(MessageId::kCannotWriteJournal, {}) + JournalPath());
    return false;
}

void DeleteJournal() {
    DeleteFile(JournalPath());
}

} // namespace kelvash::swap
