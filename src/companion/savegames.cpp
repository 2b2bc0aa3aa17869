#include "companion/savegames.h"

#include "companion/fragments.h"
#include "companion/messages.h"
#include "core/profile.h"
#include "foundation/bytes.h"
#include "foundation/date_text.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/moved_saves.h"
#include "swap/savegame_files.h"

namespace kelvash::companion {

namespace {

constexpr std::size_t kTitleSize = 75;
constexpr std::size_t kNumberEnd = kTitleSize + sizeof(std::int16_t);

} // namespace

std::int32_t ReadSavegameInfo(std::string_view path, std::string& title) {
    title = LoadMessage(msg::kSaveNotReadable);
    const std::optional<std::string> bytes = ReadFileStart(path, kNumberEnd);
    if (!bytes || bytes->empty()) return 0;
    const std::string_view field = std::string_view(*bytes).substr(0, kTitleSize);
    const std::size_t end = field.find_first_of(std::string_view(",\r\n\0", 4));
    title = Utf8FromAnsi(Trim(field.substr(0, end)));
    ByteReader reader(*bytes);
    reader.Skip(kTitleSize);
    return reader.Get<std::int16_t>();
}

bool IsSavegameName(std::string_view name) {
    const std::string start = LoadFragment(fragment::kSaveNamePart);
    return StartsWithNoCase(name, start) && name.size() > start.size();
}

std::string SavegameLine(std::string_view path) {
    constexpr std::size_t kNumberWidth = 4;
    std::string title;
    std::string number = std::to_string(ReadSavegameInfo(path, title));
    if (number.size() < kNumberWidth) number.insert(0, kNumberWidth - number.size(), ' ');
    return number + " " + title + LoadMessage(msg::kSaveLineStart) +
           FormatDate(LoadFragment(fragment::kSaveDatePattern), FileTime(path).value_or(0)) +
           LoadMessage(msg::kSaveLineEnd);
}

std::string SlotFolder(const core::LevelPlace& level) {
    return swap::SlotsOfFolder(level.Folder);
}

std::vector<std::string> SlotSavegames(const core::LevelPlace& level) {
    return ListFiles(SlotFolder(level), LoadFragment(fragment::kSaveSlotMask));
}

std::vector<std::string> KeptSavegames(const core::LevelPlace& level) {
    const std::string folder = swap::RepeatedFolder(level.Folder);
    std::vector<std::string> kept = ListFiles(folder, LoadFragment(fragment::kSaveSlotMask));
    const std::vector<std::string> notes = swap::ListLoneNotes(folder);
    kept.insert(kept.end(), notes.begin(), notes.end());
    return kept;
}

std::vector<std::string> ArchivedSavegames(const core::LevelPlace& level) {
    const std::string part = LoadFragment(fragment::kSaveNamePart);
    std::vector<std::string> found = ScanTree(core::SavegamesFolder(level.Folder)).files;
    std::erase_if(found, [&](const std::string& path) {
        return FindNoCase(FileNameOf(path), part) == std::string::npos;
    });
    return found;
}

} // namespace kelvash::companion
