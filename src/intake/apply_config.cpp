#include "intake/apply_config.h"

#include <algorithm>
#include <limits>

#include "core/archive.h"
#include "core/path_field.h"
#include "core/profile.h"
#include "foundation/bytes.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/fragments.h"
#include "intake/messages.h"
#include "intake/work_folder.h"
#include "swap/backup.h"

namespace kelvash::intake {

namespace {

struct ApplyState {
    bool Applied = false;
};

} // namespace

constinit bool& ConfigApplied = State<ApplyState>::Get().Applied;

namespace {

constexpr std::size_t kPair = 2;
constexpr std::size_t kFour = 4;

using Group = std::vector<std::string>;

// The groups of a NUL list; those that were added and never filled in are left out.
std::vector<Group> Groups(std::string_view list, std::size_t size) {
    const std::vector<std::string> items = ConfigItems(list, size);
    std::vector<Group> groups;
    for (std::size_t i = 0; i + size <= items.size(); i += size) {
        Group group;
        for (std::size_t k = 0; k < size; ++k)
            group.emplace_back(Trim(items[i + k]));
        if (std::any_of(group.begin(), group.end(), [](const std::string& item) { return !item.empty(); }))
            groups.push_back(std::move(group));
    }
    return groups;
}

// Names in a package file are names, not paths: what they say of folders is left out. Nothing, with the text
// noted, for what no file can be called.
std::optional<PlainName> NameIn(const std::string& text, RefusedNames& refused) {
    std::optional<PlainName> name = PlainName::From(FileNameOf(text));
    if (!name) refused.push_back(text);
    return name;
}

void CopyIfMissing(const std::string& source, const std::string& target) {
    if (!FileExists(target) && !CopyFile(source, target))
        TellCritical(LoadMessage(msg::kConfigCopyFailed) + source);
}

// Copies files of one base name as files of another, each with its own extension; what is there stays.
void CopyUnderName(const std::vector<std::string>& files, const std::string& folder, const std::string& name,
                   RefusedNames& refused) {
    for (const std::string& file : files) {
        const std::string text = BaseNameOf(name) + ExtensionOf(FileNameOf(file));
        const std::optional<PlainName> target = PlainName::From(text);
        if (!target) {
            refused.push_back(name);
            return;
        }
        CopyIfMissing(file, PathIn(folder, *target));
    }
}

void TellRefused(RefusedNames names) {
    std::erase(names, std::string()); // of an entry that was added and not filled in
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    if (!names.empty())
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kConfigNamesRefused, {CleanLines(names)}));
}

void TakeFields(NewLevel& level, RefusedNames& refused) {
    const core::LevelEdit record = core::archive.Table.Edit(level.Level.Index);
    level.Name = FitText(CleanLine(Trim(LevelConfig.LevelName)), core::kLineWidth);
    level.Note = FitText(CleanLine(Trim(LevelConfig.LevelNote)), core::kLineWidth);
    record->Author = CleanLine(LevelConfig.AuthorName);
    record->Emails = LevelConfig.AuthorEmails;
    record->Sites = LevelConfig.AuthorSites;
    record->AuthorNote = CleanText(LevelConfig.AuthorMessage);
    const std::string document(Trim(LevelConfig.MoreInfoFile));
    const bool plain = PlainName::From(document).has_value();
    record->MoreInfoFile = plain ? document : std::string();
    if (!document.empty() && !plain) refused.push_back(document);
}

void SelectConfiguredDocument(NewLevel& level) {
    const std::string name(Trim(LevelConfig.MoreInfoFile));
    if (ContainsNoCase(level.MoreInfoChoices, name)) SelectMoreInfo(level, name);
}

// False if wads are missing that the level's conversion needs; they can't be fetched by the program itself.
bool HasImportedWads() {
    for (const Group& pair : Groups(LevelConfig.ImportWads, kPair)) {
        if (WadsInstalled(pair[0], pair[1])) continue;
        const std::string notes(Trim(LevelConfig.ImportNotes));
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessageOfOthers(msg::kConfigWadsMissing,
                                        {notes.empty() ? pair[0] : notes, kLineBreak, pair[1], kLineBreak}));
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kConfigWithoutWads));
        return false;
    }
    return true;
}

// An original CD that a wave can be taken from.
struct OriginalCd {
    std::string code;
    std::string name;
};

const std::string* FindCdName(const std::vector<OriginalCd>& cds, const std::string& code) {
    const auto found = std::find_if(cds.begin(), cds.end(),
                                    [&](const OriginalCd& cd) { return EqualNoCase(cd.code, code); });
    return found == cds.end() ? nullptr : &found->name;
}

std::vector<OriginalCd> OriginalCds() {
    const std::vector<std::string> codes = Split(LoadFragment(fragment::kExternCdCodes), '|');
    const std::vector<std::string> names = Split(LoadFragment(fragment::kExternCdNames), '|');
    std::vector<OriginalCd> cds;
    for (std::size_t i = 0; i < std::min(codes.size(), names.size()); ++i)
        cds.push_back({codes[i], names[i]});
    return cds;
}

// Has the CD inserted until the file is there; false if the user gives up.
bool AskForCd(const std::string& source, const std::string& file, const std::string& cd) {
    if (!AskYesNo(MessageStyle::Question, LoadMessageOfOthers(msg::kExternHaveCd, {cd, kLineBreak})))
        return false;
    for (;;) {
        const MessageText text = LoadMessage(msg::kExternInsertCd, {cd}) + source.substr(0, 2);
        if (TheUser().Ask(Buttons::OkCancel, MessageStyle::Exclamation, text) == Answer::Cancel) return false;
        if (FileExists(source)) return true;
        if (!AskYesNo(MessageStyle::Question, LoadMessageOfOthers(msg::kExternRetry, {file, kLineBreak})))
            return false;
    }
}

// Where a wave comes from. It stays as it is when a group names no CD that is known; that is meant.
struct WaveSource {
    std::string path;
    bool found = false;
};

void FindOnCd(const Group& group, const std::string& cd, WaveSource& source, RefusedNames& refused) {
    source = {};
    const std::vector<std::string> drives = CdDrives();
    const std::optional<PlainName> name = PlainName::From(group[1]);
    if (!name) refused.push_back(group[1]);
    if (drives.empty() || !name) return;
    source.path = drives.front() + LoadFragment(fragment::kExternAudioFolder) + name->Text();
    source.found = FileExists(source.path) || AskForCd(source.path, name->Text(), cd);
}

enum class Replacement { Use, Finished, None };

// What stands for a wave that can't be had from its CD.
Replacement FindReplacement(const std::string& folder, const Group& group, WaveSource& source,
                            RefusedNames& refused) {
    if (group[3].empty()) return Replacement::None;
    const std::optional<PlainName> name = NameIn(group[3], refused);
    if (!name) return Replacement::None;
    const bool same_name = EqualNoCase(group[3], group[2]);
    for (const std::string& place :
         {PathIn(folder, *name),
          core::TrleFolder() + LoadFragment(fragment::kExternTrleAudio) + name->Text()}) {
        if (!FileExists(place)) continue;
        source.path = place;
        return same_name ? Replacement::Finished : Replacement::Use;
    }
    return Replacement::None;
}

// The list of files is told the real size, as another edition's wave may differ from the author's.
void CorrectListedSize(const std::string& target, const std::string& source) {
    const auto bytes = std::min<std::int64_t>(FileSize(source), std::numeric_limits<std::int32_t>::max());
    for (std::size_t i = 0; i < LevelConfig.FileNames.size() && i < LevelConfig.FileSizes.size(); ++i)
        if (EqualNoCase(Trim(LevelConfig.FileNames[i]), FileNameOf(target)))
            LevelConfig.FileSizes[i] = static_cast<std::int32_t>(bytes);
}

void TellMissingWave(const Group& group) {
    TellCritical(LoadMessage(msg::kExternMissing) + group[1] + ")");
}

void ImportWave(const std::string& folder, const Group& group, const PlainName& name, WaveSource& source,
                RefusedNames& refused) {
    if (!source.found) {
        const Replacement replacement = FindReplacement(folder, group, source, refused);
        if (replacement == Replacement::Finished) return;
        if (replacement == Replacement::None) {
            TellMissingWave(group);
            return;
        }
    }
    ShowInfo(LoadMessage(msg::kExternImport) + group[1]);
    const std::string target = PathIn(folder, name);
    CorrectListedSize(target, source.path);
    if (!CopyFile(source.path, target)) TellCritical(LoadMessage(msg::kAddWaveError, {source.path}) + folder);
}

void ApplyFoundConfig(NewLevel& level) {
    level.ConfigFound = true;
    RefusedNames refused;
    TakeFields(level, refused);
    SelectConfiguredDocument(level);
    DeleteFile(level.WorkFolder + LoadFragment(fragment::kConfigName));
    RefreshFileList(level);
    if (!HasImportedWads()) {
        CancelLevel(level);
        return;
    }
    ApplyDuplications(level.WorkFolder, refused);
    ApplyExternWaves(level.WorkFolder, refused);
    const std::string exe_kind(Trim(LevelConfig.ExeKind));
    if (!exe_kind.empty())
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kConfigExeLevel, {exe_kind}));
    ApplyUseWads(level.WorkFolder, refused);
    TellRefused(refused);
    RefreshFileList(level);
    SelectConfiguredDocument(level);
    ConfigApplied = true;
    ShowInfo({});
    // An answer of No only keeps .tom sources from being converted at once.
    static_cast<void>(CheckLevelConfigFiles(level, Loudness::Loud));
}

// What is wrong with a file of the list; empty if it is there in its size.
std::string ListProblem(const std::string& folder, const std::string& name, std::int32_t size) {
    const std::optional<PlainName> plain = PlainName::From(name);
    if (!plain || !FileExists(PathIn(folder, *plain))) return LoadMessage(msg::kConfigFileMissing, {name});
    if (FileSize(PathIn(folder, *plain)) != size) return LoadMessage(msg::kConfigFileSize, {name});
    return {};
}

} // namespace

void ApplyLevelConfig(NewLevel& level) {
    const std::string path = level.WorkFolder + LoadFragment(fragment::kConfigName);
    if (!FileExists(path)) return;
    if (ConfigApplied) {
        DeleteFile(path);
        RefreshFileList(level);
    } else if (ReadLevelConfig(path)) {
        ApplyFoundConfig(level);
    }
}

bool CheckLevelConfigFiles(const NewLevel& level, Loudness loudness) {
    if (!level.ConfigFound || level.ConfigFromDatabase) return true;
    const std::size_t count = std::min(LevelConfig.FileNames.size(), LevelConfig.FileSizes.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name(Trim(LevelConfig.FileNames[i]));
        const std::string problem = ListProblem(level.WorkFolder, name, LevelConfig.FileSizes[i]);
        if (problem.empty()) continue;
        if (loudness == Loudness::Quiet ||
            !AskYesNo(MessageStyle::Question, LoadMessage(msg::kConfigContinue, {problem + kLineBreak})))
            return false;
    }
    return true;
}

bool WadsInstalled(const std::string& proof, const std::string& url) {
    constexpr std::int64_t kSmallestRevisedWad = 3000001; // only this tells the revised wads from the first
    if (FindNoCase(UrlFileName(url), LoadFragment(fragment::kConfigRevisedWord)) != std::string::npos)
        return FileSize(swap::BackupFolder() + LoadFragment(fragment::kConfigRevisedWad)) >=
               kSmallestRevisedWad;
    const std::optional<PlainName> name = PlainName::From(proof);
    return name && FileExists(PathIn(core::TrleFolder() + LoadFragment(fragment::kConfigWadsFolder), *name));
}

void ApplyDuplications(const std::string& folder, RefusedNames& refused) {
    // The first item as it stands, even of a group that was never filled in.
    const std::vector<std::string> items = ConfigItems(LevelConfig.Duplications, kPair);
    if (!items.empty()) ShowInfo(LoadMessage(msg::kConfigDuplication) + std::string(Trim(items.front())));
    for (const Group& pair : Groups(LevelConfig.Duplications, kPair))
        CopyUnderName(ListFiles(folder, pair[0]), folder, pair[1], refused);
}

void ApplyExternWaves(const std::string& folder, RefusedNames& refused) {
    const std::vector<OriginalCd> cds = OriginalCds();
    WaveSource source;
    for (const Group& group : Groups(LevelConfig.ExternWaves, kFour)) {
        ShowInfo(LoadMessage(msg::kExternRequest) + group[1]);
        if (group[2].empty()) {
            TellMissingWave(group);
            continue;
        }
        const std::optional<PlainName> name = NameIn(group[2], refused);
        if (!name) continue;
        if (const std::string* cd = FindCdName(cds, group[0]))
            FindOnCd(group, *cd, source, refused);
        else
            TellCritical(LoadMessage(msg::kExternUnknownCd) + group[0] + ")");
        ImportWave(folder, group, *name, source, refused);
    }
}

void ApplyUseWads(const std::string& folder, RefusedNames& refused) {
    const std::string wads = core::TrleFolder() + LoadFragment(fragment::kConfigWadsFolder);
    for (const Group& pair : Groups(LevelConfig.UseWads, kPair)) {
        std::vector<std::string> sources = ListFiles(wads, pair[1]);
        if (sources.empty()) sources = ListFiles(folder, pair[1]);
        CopyUnderName(sources, folder, pair[0], refused);
    }
}

} // namespace kelvash::intake
