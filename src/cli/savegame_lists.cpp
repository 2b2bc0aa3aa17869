#include "cli/savegame_lists.h"

#include <algorithm>
#include <vector>

#include "cli/messages.h"
#include "companion/savegame_images.h"
#include "companion/savegame_notes.h"
#include "companion/savegames.h"
#include "companion/screenshots.h"
#include "core/profile.h"
#include "foundation/date_text.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/savegame_files.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

constexpr std::string_view kDatePattern = "yyyy-mm-dd hh:nn:ss";

// Below the level's or the TRLE folder.
std::string FileBelow(const core::LevelPlace& level, const std::string& path) {
    for (const std::string& folder : {level.Folder, core::TrleFolder()})
        if (StartsWithNoCase(path, folder + "\\")) return path.substr(folder.size() + 1);
    return path;
}

ordered_json Record(const core::LevelPlace& level, const std::string& path, const std::string& note,
                    const std::vector<companion::DatedImage>& images) {
    const std::int64_t time = FileTime(path).value_or(0);
    ordered_json record = {
        {"file", FileBelow(level, path)},         {"slot", nullptr}, {"number", nullptr}, {"title", nullptr},
        {"date", FormatDate(kDatePattern, time)}, {"note", nullptr}, {"image", nullptr}};
    if (swap::IsNoteName(FileNameOf(path))) { // a note that lost its savegame
        record["note"] = companion::ReadNoteFile(path);
        return record;
    }
    std::string title;
    record["slot"] = swap::SlotNumber(path);
    record["number"] = companion::ReadSavegameInfo(path, title);
    record["title"] = title;
    if (!note.empty()) record["note"] = companion::ReadNoteFile(note);
    if (const std::string image = companion::LinkedImage(time, images); !image.empty())
        record["image"] = FileBelow(level, image);
    return record;
}

ordered_json Records(const core::LevelPlace& level, const std::vector<std::string>& paths,
                     const std::vector<companion::DatedImage>& images) {
    ordered_json records = ordered_json::array();
    const std::vector<std::string> notes = companion::OwnNotesOf(paths);
    for (std::size_t i = 0; i < paths.size(); ++i)
        records.push_back(Record(level, paths[i], notes[i], images));
    return records;
}

std::vector<std::string> AllOf(const core::LevelPlace& level) {
    std::vector<std::string> all = companion::SlotSavegames(level);
    for (const auto& more : {companion::ArchivedSavegames(level), companion::KeptSavegames(level)})
        all.insert(all.end(), more.begin(), more.end());
    return all;
}

std::string Lines(MessageId heading, const ordered_json& list) {
    std::string lines = LoadMessage(heading) + ": " + std::to_string(list.size()) + "\n";
    for (const ordered_json& record : list) {
        lines += "  " + CleanLine(record["file"].get<std::string>()) + "  ";
        if (!record["number"].is_null())
            lines += std::to_string(record["number"].get<std::int32_t>()) + "  " +
                     CleanLine(record["title"].get<std::string>()) + "  ";
        lines += record["date"].get<std::string>();
        if (!record["note"].is_null()) lines += "  " + CleanLine(record["note"].get<std::string>());
        if (!record["image"].is_null()) lines += "  [" + CleanLine(record["image"].get<std::string>()) + "]";
        lines += "\n";
    }
    return lines;
}

} // namespace

SavegameLists ListSavegames(const core::LevelPlace& level) {
    const std::vector<companion::DatedImage> images = companion::DatedImages(companion::Screenshots(level));
    return {Records(level, companion::SlotSavegames(level), images),
            Records(level, companion::ArchivedSavegames(level), images),
            Records(level, companion::KeptSavegames(level), images)};
}

std::string SavegameLines(const SavegameLists& lists) {
    std::string lines = Lines(msg::kCliSlots, lists.slots) + Lines(msg::kCliArchived, lists.archived);
    if (!lists.kept.empty()) lines += Lines(msg::kCliKeptSaves, lists.kept);
    return lines;
}

std::string SavegameCalled(const core::LevelPlace& level, const std::string& file) {
    std::string name = file;
    std::replace(name.begin(), name.end(), '/', '\\');
    const std::vector<std::string> all = AllOf(level);
    const auto found = std::find_if(all.begin(), all.end(), [&](const std::string& path) {
        return EqualNoCase(path, name) || EqualNoCase(FileBelow(level, path), name);
    });
    return found == all.end() ? std::string() : *found;
}

} // namespace kelvash::cli
