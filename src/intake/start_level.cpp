// How a level without a script of its own is reached in the game, its language file, and what its files are.
#include <algorithm>
#include <array>
#include <optional>

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/fragments.h"
#include "intake/messages.h"
#include "intake/new_level.h"
#include "swap/backup.h"

namespace kelvash::intake {

namespace {

std::string Quoted(const std::string& name) {
    return '"' + name + '"';
}

// A level that the Level Editor ships: the game's own script knows it.
struct StandardLevel {
    std::string name;
    std::string file;
};

std::vector<StandardLevel> StandardLevels() {
    const std::vector<std::string> names = Split(LoadFragment(fragment::kStandardLevelNames), '|');
    const std::vector<std::string> files = Split(LoadFragment(fragment::kStandardLevelFiles), '|');
    std::vector<StandardLevel> levels;
    for (std::size_t i = 0; i < std::min(names.size(), files.size()); ++i)
        levels.push_back({names[i], files[i]});
    return levels;
}

// The first standard level that a document names.
std::optional<StandardLevel> NamedInDocuments(const std::string& folder,
                                              const std::vector<StandardLevel>& levels) {
    for (const std::string& document : ListDocumentFiles(folder)) {
        constexpr std::size_t kLongestDocument = std::size_t{8} << 20; // bytes that are searched
        const std::string text = ReadFileStart(document, kLongestDocument).value_or(std::string());
        for (const StandardLevel& level : levels)
            if (FindNoCase(text, level.file) != std::string::npos) return level;
    }
    return std::nullopt;
}

bool RenameLevelFile(const std::string& tr4, const std::string& name) {
    if (RenameFile(tr4, FolderOf(tr4) + "\\" + name)) return true;
    TellCritical(LoadMessage(msg::kCannotRenameTr4, {FileNameOf(tr4)}) + name + "'");
    return false;
}

bool RenameAfterDocument(const std::string& tr4, const StandardLevel& level) {
    const std::string old = Quoted(FileNameOf(tr4));
    const MessageText question = LoadMessageOfOthers(msg::kRenameTr4Question, {old, kLineBreak, old}) +
                                 Quoted(level.file) + LoadMessage(msg::kRenameTr4QuestionEnd);
    return AskYesNo(MessageStyle::Question, question) && RenameLevelFile(tr4, level.file);
}

bool RenameAfterNumber(const std::string& tr4, const std::vector<StandardLevel>& levels) {
    if (!AskYesNo(MessageStyle::Question,
                  LoadMessage(msg::kMissingDatQuestion, {kLineBreak, kLineBreak, kLineBreak, kLineBreak})))
        return false;
    std::vector<std::string> choices;
    for (std::size_t i = 0; i < levels.size(); ++i)
        choices.push_back(std::to_string(i + 1) + "=" + levels[i].name);
    const std::optional<std::string> typed =
        TheUser().Input(LoadMessage(msg::kRenameTr4Title),
                        LoadMessage(msg::kRenameTr4Input) + kLineBreak + Join(choices, ", "),
                        LoadFragment(fragment::kRenameTr4Default));
    const std::optional<std::int32_t> number = WholeNumber(Trim(typed.value_or("")));
    if (!number || *number < 1 || *number > static_cast<std::int32_t>(levels.size())) return false;
    return RenameLevelFile(tr4, levels[static_cast<std::size_t>(*number) - 1].file);
}

bool IsScriptDat(const std::string& path) {
    return EqualNoCase(FileNameOf(path), LoadFragment(fragment::kIntakeScriptDat));
}

// Language files of a folder; script.dat is none.
std::vector<std::string> LanguageFiles(const std::string& folder) {
    std::vector<std::string> files = ListFiles(folder, LoadFragment(fragment::kIntakeDatMask));
    std::erase_if(files, IsScriptDat);
    return files;
}

// False after a message.
bool CompleteScript(const std::string& folder) {
    const std::vector<std::string> files = ListFiles(folder, LoadFragment(fragment::kIntakeDatMask));
    if (std::any_of(files.begin(), files.end(), IsScriptDat)) return true;
    const std::string script = LoadFragment(fragment::kBackupScript);
    if (!FileExists(swap::BackupFolder() + script)) return true; // nothing to complete it with
    if (CopyFile(swap::BackupFolder() + script, folder + script)) return true;
    TellCritical(LoadMessage(msg::kCannotCompleteScript) + folder);
    return false;
}

// The place of the language to keep; asks until one is named. Nothing if the user cancels, and after a
// message where the same wrong answer comes for ever, as one that was written down may.
std::optional<std::size_t> AskLanguage(const std::vector<std::string>& files) {
    constexpr int kMostRepeats = 10;
    const std::string count = std::to_string(files.size());
    MessageText text = LoadMessage(msg::kLanguageInput, {count}) + count + ")";
    for (std::size_t i = 0; i < files.size(); ++i)
        text += kLineBreak + std::to_string(i + 1) + "=" + FileNameOf(files[i]);
    std::optional<std::string> before;
    for (int repeats = 0; repeats < kMostRepeats;) {
        const std::optional<std::string> typed =
            TheUser().Input(LoadMessage(msg::kLanguageTitle), text, LoadFragment(fragment::kLanguageDefault));
        if (!typed) return std::nullopt;
        const std::int32_t number = WholeNumber(Trim(*typed)).value_or(0);
        if (number >= 1 && number <= static_cast<std::int32_t>(files.size()))
            return static_cast<std::size_t>(number) - 1;
        repeats = typed == before ? repeats + 1 : 1;
        before = typed;
    }
    TellCritical(LoadMessage(msg::kNoSuchLanguage, {CleanLine(*before)}));
    return std::nullopt;
}

std::optional<std::size_t> PickLanguage(const std::vector<std::string>& files) {
    const std::vector<std::string> own = LanguageFiles(swap::BackupFolder());
    if (!own.empty())
        for (std::size_t i = 0; i < files.size(); ++i)
            if (EqualNoCase(FileNameOf(files[i]), FileNameOf(own.front()))) return i;
    return AskLanguage(files);
}

} // namespace

bool ResolveStartLevel(const std::string& folder, std::string& level_name) {
    level_name.clear();
    if (AnyFile(folder, LoadFragment(fragment::kIntakeDatMask))) return true;
    const std::vector<std::string> tr4 = ListFiles(folder, LoadFragment(fragment::kIntakeTr4Mask));
    if (tr4.empty()) return true;
    if (tr4.size() > 1) return false;
    const std::vector<StandardLevel> levels = StandardLevels();
    for (const StandardLevel& level : levels)
        if (EqualNoCase(FileNameOf(tr4.front()), level.file)) {
            level_name = level.name;
            return true;
        }
    const std::optional<StandardLevel> named = NamedInDocuments(folder, levels);
    return named ? RenameAfterDocument(tr4.front(), *named) : RenameAfterNumber(tr4.front(), levels);
}

bool ChooseLanguageFile(const std::string& folder) {
    const std::vector<std::string> files = LanguageFiles(folder);
    std::optional<std::size_t> kept = 0;
    if (files.size() > 1) kept = PickLanguage(files);
    // Without a choice the folder stays as it is.
    if (!kept || !CompleteScript(folder)) return false;
    for (std::size_t i = 0; i < files.size(); ++i)
        if (i != *kept) DeleteFile(files[i]);
    return true;
}

std::vector<std::string> ListDocumentFiles(std::string_view folder) {
    const std::vector<std::string> excluded = Split(LoadFragment(fragment::kNoDocuments), '|');
    std::vector<std::string> documents;
    for (const std::string& mask : Split(LoadFragment(fragment::kDocumentMasks), '|'))
        for (const std::string& file : ListFiles(folder, mask))
            if (std::none_of(excluded.begin(), excluded.end(),
                             [&](const std::string& name) { return EqualNoCase(FileNameOf(file), name); }))
                documents.push_back(file);
    return documents;
}

bool IsLevelSourceFile(std::string_view path) {
    const std::string extension = ExtensionOf(FileNameOf(path));
    for (const std::string& source : Split(LoadFragment(fragment::kSourceExtensions), '|'))
        if (EqualNoCase(extension, source)) return true;
    constexpr std::array<std::string_view, 2> kBesideSources = {".tga", ".txt"};
    constexpr std::array<std::string_view, 2> kSources = {".tom", ".wad"};
    const auto is = [&](std::string_view other) { return EqualNoCase(extension, other); };
    const auto stands = [&](std::string_view other) { return FileExists(ReplaceExtension(path, other)); };
    return std::any_of(kBesideSources.begin(), kBesideSources.end(), is) &&
           std::any_of(kSources.begin(), kSources.end(), stands);
}

} // namespace kelvash::intake
