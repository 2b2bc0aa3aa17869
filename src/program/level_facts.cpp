#include "program/level_facts.h"

#include "companion/savegames.h"
#include "companion/screenshots.h"
#include "core/archive.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "program/fragments.h"
#include "program/messages.h"

namespace kelvash::program {

namespace {

std::string SavegamesText(std::int32_t count) {
    return count == 1 ? LoadMessage(msg::kLineOneSavegame)
                      : LoadMessage(msg::kLineSavegames, {std::to_string(count)});
}

} // namespace

LevelFacts FactsOf(std::int32_t code) {
    const core::LevelPlace level = core::PlaceOf(code);
    LevelFacts facts;
    facts.Picture = companion::NewestScreenshot(level);
    facts.Savegames = static_cast<std::int32_t>(companion::SlotSavegames(level).size() +
                                                companion::ArchivedSavegames(level).size());
    facts.Packed =
        !ListFiles(core::FilesFolder(level.Folder), LoadFragment(fragment::kLinePackedMask)).empty();
    return facts;
}

std::string LevelLine(const core::LevelRecord& level, const LevelFacts* facts) {
    std::string line;
    const auto add = [&line](std::string_view part) {
        if (part.empty()) return;
        if (!line.empty()) line += LoadFragment(fragment::kLineGap);
        line += part;
    };
    add(Trim(level.Author));
    if (level.Code != 0 && level.FilesSize > 0) add(FormatSize(level.FilesSize));
    if (facts != nullptr && facts->Savegames > 0) add(SavegamesText(facts->Savegames));
    add(Trim(level.Note));
    return line;
}

} // namespace kelvash::program
