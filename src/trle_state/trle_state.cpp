#include "trle_state/trle_state.h"

#include <algorithm>

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "trle_state/fragments.h"
#include "trle_state/marker.h"
#include "trle_state/surroundings.h"

namespace kelvash::trle_state {

namespace {

bool IsLevelFile(const RecordedFile& file) {
    return EndsWithNoCase(file.Target, LoadFragment(fragment::kRecordTr4Extension));
}

bool LevelFilesStand(const SwapRecord& record) {
    const auto& files = record.Copied;
    return std::any_of(files.begin(), files.end(), IsLevelFile) &&
           std::all_of(files.begin(), files.end(), [](const RecordedFile& file) {
               return !IsLevelFile(file) || IsStill(TrleFolder() + file.Target, file.Stamp);
           });
}

bool StillHolds(const SwapRecord& record) {
    return !FolderExists(TrleFolder()) ||
           (!record.MarkerHash.empty() && HashOfBytes(ReadMarkerBytes()) == record.MarkerHash) ||
           LevelFilesStand(record);
}

// True if the .tr4 files of a level, as its tr4.inf lists them, are those in TRLE.
bool HasItsTr4s(const LevelPlace& level) {
    const std::vector<ListedTr4> list = ListedTr4s(level.Folder);
    const std::string data = TrleFolder() + LoadFragment(fragment::kMarkerDataFolder);
    return !list.empty() && std::all_of(list.begin(), list.end(), [&](const ListedTr4& listed) {
        const std::string file = data + "\\" + listed.Name;
        return StaysInside("\\" + listed.Name) && FileExists(file) && FileSize(file) == listed.Size;
    });
}

bool IsMarkersLevel(const LevelPlace& level, const std::string& marker) {
    if (!level.IsListed()) return false;
    const std::string name = MarkerField(LoadFragment(fragment::kMarkerLevelName), marker);
    return (!name.empty() && EqualNoCase(name, MarkerName(level.Name))) || HasItsTr4s(level);
}

std::vector<RecordedFile> ListedFiles(const Fragment& tag, const std::string& marker) {
    std::vector<RecordedFile> files;
    for (const std::string& target : CleanMarkerList(LoadFragment(tag), marker))
        files.push_back({target});
    return files;
}

void TakeMarker(TrleState& state) {
    state.Record = {};
    state.Record.Copied = ListedFiles(fragment::kMarkerCopied, state.MarkerText);
    state.Record.Overwritten = ListedFiles(fragment::kMarkerOverwritten, state.MarkerText);
    state.Content = Holds::Unknown;
    const std::string value = MarkerField(LoadFragment(fragment::kMarkerLevelCode), state.MarkerText);
    const LevelPlace level = PlaceOfLevel(LeadingNumber(value));
    if (value.empty() || (level.Code != 0 && !IsMarkersLevel(level, state.MarkerText))) return;
    state.Content = Holds::Level;
    state.Code = level.Code;
    state.Record.Owner = OwnerOf(level);
    state.OwnerFolder = FindOwnerFolder(state.Record.Owner);
    if (level.Code == 0 || state.OwnerFolder.empty()) return;
    // A copy has the date of the level's own file.
    for (RecordedFile& file : state.Record.Copied)
        file.Stamp = StampOf(FilesOfLevel(state.OwnerFolder) + "\\" + FileNameOf(file.Target));
}

bool IsProgram(const RecordedFile& file) {
    const std::vector<std::string> kinds = Split(LoadFragment(fragment::kKeptExtensions), '|');
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](const std::string& kind) { return EndsWithNoCase(file.Target, kind); });
}

// A marker alone is no proof that a program is a level's and not TRLE's: the level must have it.
void LeavePrograms(SwapRecord& record) {
    auto& copied = record.Copied;
    std::erase_if(copied, [](const RecordedFile& file) { return IsProgram(file) && file.Stamp.Size < 0; });
    std::erase_if(record.Overwritten, [&](const RecordedFile& file) {
        return IsProgram(file) && std::none_of(copied.begin(), copied.end(), [&](const RecordedFile& other) {
                   return EqualNoCase(other.Target, file.Target);
               });
    });
}

void TakeRecord(SwapRecord record, TrleState& state) {
    state.FromRecord = true;
    state.Content = record.Step == SwapStep::In         ? Holds::Level
                    : record.Step == SwapStep::Original ? Holds::Original
                                                        : Holds::CutShort;
    state.OwnerFolder = FindOwnerFolder(record.Owner);
    // A folder that is missing is still the owner's; one that holds another level isn't.
    if (!state.OwnerFolder.empty() || !FolderExists(record.Owner.Folder))
        state.Code = CodeOfFolder(state.OwnerFolder.empty() ? record.Owner.Folder : state.OwnerFolder);
    state.Record = std::move(record);
}

} // namespace

TrleState LookAtTrle() {
    TrleState state;
    state.MarkerStands = FileExists(MarkerPath());
    state.MarkerText = ReadMarker();
    FoundRecord found = ReadSwapRecord();
    const SwapStep step = found.Record.Step;
    const bool good = found.State == RecordState::Good;
    if (good &&
        (step == SwapStep::Original ? !state.MarkerStands : step != SwapStep::In || StillHolds(found.Record)))
        TakeRecord(std::move(found.Record), state);
    else if (state.MarkerStands) {
        TakeMarker(state);
        LeavePrograms(state.Record);
    } else if (found.State != RecordState::None)
        state.Content = Holds::Unknown;
    return state;
}

std::int32_t CurrentLevelCode() {
    const TrleState state = LookAtTrle();
    if (state.Content == Holds::Level) return state.Code;
    if (state.Content == Holds::CutShort) return kNoLevel;
    const std::int32_t marked =
        LeadingNumber(MarkerField(LoadFragment(fragment::kMarkerLevelCode), state.MarkerText));
    if (state.Content == Holds::Original || marked == 0) return 0;
    return PlaceOfLevel(marked).IsListed() ? kNoLevel : marked;
}

bool IsInTrle(std::int32_t code) {
    const TrleState state = LookAtTrle();
    return state.Code == code && (state.Content == Holds::Level || state.Content == Holds::CutShort);
}

bool LevelIsWhole() {
    const FoundRecord found = ReadSwapRecord();
    const auto& files = found.Record.Copied;
    return found.State == RecordState::Good && found.Record.Step == SwapStep::In &&
           std::all_of(files.begin(), files.end(),
                       [](const RecordedFile& file) { return file.Stamp.Size >= 0; });
}

} // namespace kelvash::trle_state
