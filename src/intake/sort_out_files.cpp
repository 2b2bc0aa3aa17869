// What lies among a level's files and isn't the level's own: savegames, pictures, helpers of a package.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "companion/savegames.h"
#include "core/archive.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/fragments.h"
#include "intake/messages.h"
#include "intake/work_folder.h"
#include "media/media_config.h"
#include "swap/rescued_saves.h"
#include "trle_state/file_stamp.h"

namespace kelvash::intake {

namespace {

// A file of the work folder and where it goes.
struct Placing {
    std::string source;
    std::string target;
    bool stays = false; // the level needs it where it is, too
};

// A load screen is one of the level's files, and becomes a screenshot only when it comes in: it doesn't come
// back once the player has deleted that. In a compressing Archive load.jpg is what load.bmp has become.
bool BecomesScreenshot(const NewLevel& level, const std::string& load_screen, const std::string& folder) {
    if (!level.Adding && !IsTheDialogs(level, load_screen)) return false;
    const std::string bitmap = folder + "\\" + Split(LoadFragment(fragment::kLoadScreens), '|').front();
    return EqualNoCase(FileNameOf(load_screen), FileNameOf(bitmap)) || !FileExists(bitmap);
}

// While a level is in TRLE its savegames live there; what is put into its stash would go with the next swap.
void PlaceSavegames(const NewLevel& level, std::vector<Placing>& placings) {
    const std::string folder = companion::SlotFolder(level.Level);
    for (const std::string& file : ListFiles(level.WorkFolder, LoadFragment(fragment::kIntakeSavegameMask)))
        placings.push_back({file, folder + "\\" + FileNameOf(file)});
}

// The game and the media events need some pictures where they are; all others are screenshots.
void PlacePictures(const NewLevel& level, std::vector<Placing>& placings) {
    const std::string folder = core::ScreenshotsFolder(level.Level.Folder);
    const std::vector<std::string> media = media::ListMediaFiles(level.WorkFolder);
    const std::vector<std::string> load_screens = Split(LoadFragment(fragment::kLoadScreens), '|');
    for (const std::string& mask : Split(LoadFragment(fragment::kIntakePictureMasks), '|'))
        for (const std::string& file : ListFiles(level.WorkFolder, mask)) {
            if (ContainsNoCase(media, FileNameOf(file))) continue;
            const bool stays = ContainsNoCase(load_screens, FileNameOf(file));
            if (stays && !BecomesScreenshot(level, file, folder)) continue;
            placings.push_back({file, folder + "\\" + FileNameOf(file), stays});
        }
}

// What would be lost when all go to their places: files of other bytes that stand there, and one of two that
// differ in case only, which is placed no more.
std::vector<std::string> TakeNamesakes(std::vector<Placing>& placings) {
    std::vector<std::string> namesakes;
    std::set<std::string> taken;
    std::erase_if(placings, [&](const Placing& placing) {
        const bool again = !taken.insert(FoldCase(placing.target)).second;
        if (again) namesakes.push_back(placing.source);
        return again;
    });
    for (const Placing& placing : placings)
        if (FileExists(placing.target) && !trle_state::HoldSameBytes(placing.source, placing.target))
            namesakes.push_back(placing.target);
    return namesakes;
}

// No file leaves the work folder before its copy is on the disk.
bool Place(const Placing& placing) {
    const bool stands = FileExists(placing.target);
    if (!stands && !(CopyFileWhole(placing.source, placing.target) && FlushFile(placing.target)))
        return false;
    if (!placing.stays) DeleteFile(placing.source);
    return true;
}

} // namespace

bool SortOutFiles(const NewLevel& level) {
    std::vector<Placing> placings;
    PlaceSavegames(level, placings);
    PlacePictures(level, placings);
    if (!swap::RescueFiles(TakeNamesakes(placings), level.Level.Folder, msg::kNamesakesKept) ||
        !std::all_of(placings.begin(), placings.end(), Place)) {
        TellCritical(LoadMessage(msg::kCannotMoveSaves) + level.Level.Folder);
        return false;
    }
    for (const std::string& name : Split(LoadFragment(fragment::kIntakeHelpers), '|'))
        DeleteFile(level.WorkFolder + name);
    // One that couldn't be read is still there; a package file never enters the Archive.
    DeleteFile(level.WorkFolder + LoadFragment(fragment::kConfigName));
    return true;
}

} // namespace kelvash::intake
