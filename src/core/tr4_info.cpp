#include "core/tr4_info.h"

#include <algorithm>
#include <limits>

#include "core/archive.h"
#include "foundation/date_text.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/compression.h"

namespace kelvash::core {

std::vector<Tr4Info> Tr4List;

namespace {

constexpr std::size_t kCountSize = 4;

std::string PathOfInfo(std::int32_t code) {
    return LevelFolder(code, false) + LoadMessage(MessageId::kTr4InfoName, {});
}

const LevelRecord& LevelAt(std::int32_t index) {
    return archive.Levels[static_cast<std::size_t>(index)];
}

bool IsSame(const Tr4Info& a, const Tr4Info& b) {
    return a.FileSize == b.FileSize && EqualNoCase(Trim(a.FileName), Trim(b.FileName));
}

bool HasLevelFiles(const std::string& files) {
    return AnyFile(files, LoadMessage(MessageId::kTr4InfoMask, {}));
}

void WriteAndTell(std::int32_t index) {
    if (!WriteTr4Info(index))
        TellCritical(LoadMessage(MessageId::kCannotWriteTr4Info, {}) + PathOfInfo(LevelAt(index).Code));
}

// Makes the tr4.inf of one level. False if its CD isn't there.
bool CreateInfo(std::int32_t index) {
    const std::string files = FilesFolder(LevelFolder(LevelAt(index).Code, true));
    if (archive.CdMissing) return false;
    if (HasLevelFiles(files)) {
        ListTr4(files);
        WriteAndTell(index);
        return true;
    }
    std::string temp;
    if (!swap::DecompressLevelFiles(files, temp, false)) {
        TellCritical(LoadMessage(MessageId::kCreatingDecompressError, {}) +
                     std::string(Trim(LevelAt(index).Name)) + "]");
    } else if (!temp.empty()) {
        ListTr4(temp);
        if (!Tr4List.empty()) WriteAndTell(index);
    }
    if (!temp.empty()) RemoveFolder(temp);
    return true;
}

// Fills Tr4List for one level: from its tr4.inf, else from its files. False if they are on a CD that isn't
// there.
bool ReadOrListTr4(std::int32_t code) {
    if (ReadTr4Info(code)) return true;
    const std::string folder = LevelFolder(code, true);
    if (archive.CdMissing) return false;
    ListTr4(FilesFolder(folder));
    return true;
}

} // namespace

std::vector<Tr4Info> DecodeTr4Info(std::string_view bytes) {
    std::vector<Tr4Info> list;
    if (bytes.size() < kCountSize) return list;
    const std::int64_t stated = ReadInteger(bytes.substr(0, kCountSize));
    const auto held = static_cast<std::int64_t>((bytes.size() - kCountSize) / kTr4InfoSize);
    for (std::int64_t i = 0; i < std::min(stated, held); ++i) {
        Tr4Info info;
        const std::size_t at = kCountSize + static_cast<std::size_t>(i) * kTr4InfoSize;
        DecodeRecord(kTr4InfoFields, bytes.substr(at, kTr4InfoSize), info);
        list.push_back(std::move(info));
    }
    return list;
}

std::string EncodeTr4Info(const std::vector<Tr4Info>& list) {
    std::string bytes(kCountSize + list.size() * kTr4InfoSize, '\0');
    const std::span<char> whole(bytes);
    WriteInteger(static_cast<std::int64_t>(list.size()), whole.first(kCountSize));
    for (std::size_t i = 0; i < list.size(); ++i)
        EncodeRecord(kTr4InfoFields, list[i], whole.subspan(kCountSize + i * kTr4InfoSize, kTr4InfoSize));
    return bytes;
}

void ListTr4(std::string_view folder) {
    Tr4List.clear();
    for (const std::string& file : ListFiles(folder, LoadMessage(MessageId::kTr4InfoMask, {}))) {
        const auto size = std::min<std::int64_t>(FileSize(file), std::numeric_limits<std::int32_t>::max());
        Tr4List.push_back(
            {FileNameOf(file), DayCount(FileTime(file).value_or(0)), static_cast<std::int32_t>(size)});
    }
}

bool WriteTr4Info(std::int32_t index) {
    return ReplaceFileBytes(PathOfInfo(LevelAt(index).Code), EncodeTr4Info(Tr4List), Flush::Yes);
}

bool ReadTr4Info(std::int32_t code) {
    const std::optional<std::string> bytes = ReadFileBytes(PathOfInfo(code));
    Tr4List = bytes ? DecodeTr4Info(*bytes) : std::vector<Tr4Info>();
    return bytes.has_value();
}

bool CheckEqualLevels(const std::vector<Tr4Info>& list, std::int32_t own_code, EqualLevel& equal, Bar* bar) {
    for (std::int32_t i = 0; i < archive.Header.LevelCount; ++i) {
        const std::int32_t code = LevelAt(i).Code;
        if (bar != nullptr) ProgressPercent(*bar, i, archive.Header.LevelCount - 1);
        if (code == own_code || !ReadTr4Info(code)) continue;
        for (const Tr4Info& other : Tr4List)
            if (std::any_of(list.begin(), list.end(),
                            [&](const Tr4Info& own) { return IsSame(own, other); })) {
                equal = {code, other.FileName};
                return true;
            }
    }
    return false;
}

std::int32_t ControllaUguali() {
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(MessageId::kScanningEqual, {}));
    std::int32_t count = 0;
    for (std::int32_t i = 0; i < archive.Header.LevelCount; ++i) {
        TheUser().PumpEvents();
        if (TheUser().StopRequested()) return -1;
        if (!ReadOrListTr4(LevelAt(i).Code)) {
            ShowMessage(MessageStyle::Exclamation, LoadMessage(MessageId::kEqualCdMissing, {}));
            return -1;
        }
        const std::vector<Tr4Info> own = Tr4List;
        EqualLevel equal;
        if (CheckEqualLevels(own, LevelAt(i).Code, equal)) {
            ++count;
            const std::string name = '"' + std::string(Trim(LevelByCode(equal.Code).Name)) + '"';
            if (!AskYesNo(MessageStyle::Question,
                          LoadMessage(MessageId::kEqualFound,
                                      {'"' + std::string(Trim(equal.FileName)) + "\" ", name + kLineBreak})))
                return -1;
        }
        ProgressPercent(progress.bar, i + 1, archive.Header.LevelCount);
    }
    ShowMessage(MessageStyle::Plain,
                count == 0 ? LoadMessage(MessageId::kEqualNone, {kLineBreak})
                           : LoadMessage(MessageId::kEqualSome, {kLineBreak, std::to_string(count)}));
    return count;
}

void CreaInfoTr4() {
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(MessageId::kCreatingInfos, {}));
    for (std::int32_t i = 0; i < archive.Header.LevelCount; ++i) {
        TheUser().PumpEvents();
        if (TheUser().StopRequested()) return;
        if (!FileExists(PathOfInfo(LevelAt(i).Code)) && !CreateInfo(i)) {
            ShowMessage(MessageStyle::Exclamation, LoadMessage(MessageId::kCreatingCdMissing, {}));
            return;
        }
        ProgressPercent(progress.bar, i + 1, archive.Header.LevelCount);
    }
}

} // namespace kelvash::core
