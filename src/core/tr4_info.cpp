#include "core/tr4_info.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>

#include "core/archive.h"
#include "core/fragments.h"
#include "core/level_messages.h"
#include "core/owner_moves.h"
#include "foundation/date_text.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/state.h"
#include "foundation/text.h"

namespace kelvash::core {

namespace {

struct Tr4State {
    std::vector<Tr4Info> List;
};

} // namespace

constinit std::vector<Tr4Info>& Tr4List = State<Tr4State>::Get().List;

namespace {

bool IsSame(const Tr4Info& a, const Tr4Info& b) {
    return a.FileSize == b.FileSize && EqualNoCase(Trim(a.FileName), Trim(b.FileName));
}

// Fills Tr4List with the files of a level without a tr4.inf. False if they are on a CD that isn't there.
bool ListLevelTr4(const LevelPlace& level) {
    const std::string folder = ReachFolder(level);
    if (archive.CdMissing) return false;
    ListTr4(FilesFolder(folder));
    return true;
}

bool AskGoOn(const EqualLevel& equal) {
    return AskYesNo(MessageStyle::Question,
                    LoadMessageOfOthers(msg::kEqualFound, {std::string(Trim(equal.FileName)) + " ",
                                                           equal.Level.Name + kLineBreak}));
}

// The tr4.inf of all levels, read once and found by name and size: an Archive of thousands of levels is
// compared with itself.
struct AllTr4 {
    // Where a file is told of: its level's place in the table, then its own place in the list.
    using Place = std::pair<std::int32_t, std::size_t>;
    using Key = std::pair<std::string, std::int32_t>;
    std::map<std::int32_t, std::vector<Tr4Info>> lists; // by the level's place; none for one without a file
    std::map<Key, std::vector<Place>> places;           // in order

    static Key KeyOf(const Tr4Info& info) { return {FoldCase(Trim(info.FileName)), info.FileSize}; }
};

// False on a stop by the user.
bool ReadAllTr4(AllTr4& all) {
    for (std::int32_t i = 0; i < archive.Table.Size(); ++i) {
        TheUser().PumpEvents();
        if (TheUser().StopRequested()) return false;
        if (!ReadTr4Info(PlaceAt(i))) continue;
        for (std::size_t k = 0; k < Tr4List.size(); ++k)
            all.places[AllTr4::KeyOf(Tr4List[k])].push_back({i, k});
        all.lists[i] = Tr4List;
    }
    return true;
}

// As CheckEqualLevels: the first file of the first level of the table that has one of the list.
bool FindEqual(const AllTr4& all, const std::vector<Tr4Info>& list, std::int32_t own_code,
               EqualLevel& equal) {
    std::optional<AllTr4::Place> first;
    for (const Tr4Info& own : list) {
        const auto found = all.places.find(AllTr4::KeyOf(own));
        if (found == all.places.end()) continue;
        const auto other = std::find_if(
            found->second.begin(), found->second.end(),
            [own_code](const AllTr4::Place& place) { return archive.Table[place.first].Code != own_code; });
        if (other != found->second.end() && (!first || *other < *first)) first = *other;
    }
    if (first) equal = {PlaceAt(first->first), all.lists.at(first->first)[first->second].FileName};
    return first.has_value();
}

} // namespace

std::vector<Tr4Info> DecodeTr4Info(std::string_view bytes) {
    ByteReader reader(bytes);
    const auto stated = reader.Get<std::int32_t>();
    std::vector<Tr4Info> list(reader.Held(stated, kTr4InfoSize));
    for (Tr4Info& info : list)
        DecodeRecord(kTr4InfoFields, reader.Bytes(kTr4InfoSize), info);
    return list;
}

std::string EncodeTr4Info(const std::vector<Tr4Info>& list) {
    ByteWriter bytes;
    bytes.Put<std::int32_t>(static_cast<std::int32_t>(list.size()));
    for (const Tr4Info& info : list)
        EncodeRecord(kTr4InfoFields, info, bytes);
    return bytes.Take();
}

std::string Tr4InfoPath(const LevelPlace& level) {
    return level.Folder + LoadFragment(fragment::kTr4InfoName);
}

void ListTr4(std::string_view folder) {
    Tr4List.clear();
    for (const std::string& file : ListFiles(folder, LoadFragment(fragment::kTr4InfoMask))) {
        const auto size = std::min<std::int64_t>(FileSize(file), std::numeric_limits<std::int32_t>::max());
        Tr4List.push_back(
            {FileNameOf(file), DayCount(FileTime(file).value_or(0)), static_cast<std::int32_t>(size)});
    }
    // As a tr4.inf holds them, so that a long name is the same on both sides of a comparison.
    Tr4List = DecodeTr4Info(EncodeTr4Info(Tr4List));
}

bool WriteTr4Info(const LevelPlace& level) {
    if (!ReplaceFileBytes(Tr4InfoPath(level), EncodeTr4Info(Tr4List), Flush::Yes)) return false;
    NoteLevelChanged(level.Folder);
    return true;
}

bool ReadTr4Info(const LevelPlace& level) {
    const std::optional<std::string> bytes = ReadFileBytes(Tr4InfoPath(level));
    Tr4List = bytes ? DecodeTr4Info(*bytes) : std::vector<Tr4Info>();
    return bytes.has_value();
}

bool CheckEqualLevels(const std::vector<Tr4Info>& list, std::int32_t own_code, EqualLevel& equal, Bar* bar) {
    for (std::int32_t i = 0; i < archive.Table.Size(); ++i) {
        const LevelPlace level = PlaceAt(i);
        if (bar != nullptr) ProgressPercent(*bar, i, archive.Table.Size() - 1);
        if (level.Code == own_code || !ReadTr4Info(level)) continue;
        for (const Tr4Info& other : Tr4List)
            if (std::any_of(list.begin(), list.end(),
                            [&](const Tr4Info& own) { return IsSame(own, other); })) {
                equal = {level, other.FileName};
                return true;
            }
    }
    return false;
}

std::int32_t ControllaUguali() {
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(msg::kScanningEqual));
    AllTr4 all;
    if (!ReadAllTr4(all)) return -1;
    std::int32_t count = 0;
    for (std::int32_t i = 0; i < archive.Table.Size(); ++i) {
        TheUser().PumpEvents();
        if (TheUser().StopRequested()) return -1;
        const LevelPlace level = PlaceAt(i);
        const auto known = all.lists.find(i);
        if (known == all.lists.end() && !ListLevelTr4(level)) {
            ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kEqualCdMissing));
            return -1;
        }
        EqualLevel equal;
        if (FindEqual(all, known == all.lists.end() ? Tr4List : known->second, level.Code, equal)) {
            ++count;
            if (!AskGoOn(equal)) return -1;
        }
        ProgressPercent(progress.bar, i + 1, archive.Table.Size());
    }
    ShowMessage(MessageStyle::Plain, count == 0
                                         ? LoadMessage(msg::kEqualNone, {kLineBreak})
                                         : LoadMessage(msg::kEqualSome, {kLineBreak, std::to_string(count)}));
    return count;
}

} // namespace kelvash::core
