#include "support/swap_model.h"

#include <algorithm>

namespace kelvash::test {

namespace {

bool EndsWith(const std::string& name, const char* end) {
    return std::string_view(name).ends_with(end);
}

std::string Joined(const std::vector<std::string>& paths) {
    std::string text;
    for (const std::string& path : paths) {
        std::string entry = "\\" + path;
        std::replace(entry.begin(), entry.end(), '/', '\\');
        text += (text.empty() ? "" : "|") + entry;
    }
    return text;
}

FileMap Lowered(const std::vector<NamedFile>& files) {
    FileMap map;
    for (const NamedFile& file : files)
        map[Lower(file.name)] = file.bytes;
    return map;
}

// The media configurations of these tests hold one event at most: its movie.
std::string MovieOf(const std::string& config) {
    constexpr std::size_t kFirstEvent = 20;
    const std::string name = config.size() > kFirstEvent ? config.substr(kFirstEvent, 256) : std::string();
    return Lower(name.substr(0, name.find(' ')));
}

} // namespace

SwapModel::SwapModel(const World& world, const std::vector<WorldLevel>& levels, Backup backup)
    : trle_(TreeOf(world.trle)), backup_(TreeOf(world.backup)), full_(backup == Backup::Full) {
    for (const WorldLevel& level : levels) {
        levels_[level.code] = level;
        stash_[level.code] = FilesIn(world.StashPath(level.code));
        alive_[level.code] = SavesOf(stash_[level.code]);
    }
    levels_[0].code = 0;
    stash_[0] = FilesIn(world.StashPath(0));
    alive_[0] = SavesOf(trle_);
}

FileMap SwapModel::Files(std::int32_t code) const {
    FileMap files = Lowered(levels_.at(code).files);
    if (const auto gone = missing_.find(code); gone != missing_.end())
        for (const std::string& name : gone->second)
            files.erase(name);
    return files;
}

SwapModel::Ready SwapModel::ReadyFiles(std::int32_t code) const {
    Ready ready;
    const FileMap plain = Lowered(levels_.at(code).plain);
    for (const auto& [name, bytes] : Files(code)) {
        const auto form = plain.find(name);
        if (EndsWith(name, ".zl"))
            ready[name.substr(0, name.size() - 3)] = form->second;
        else if (name == "load.jpg")
            ready["load.bmp"] = form->second;
        else
            ready[name] = bytes;
    }
    return ready;
}

bool SwapModel::HasTr4(std::int32_t code) const {
    for (const auto& [name, bytes] : ReadyFiles(code))
        if (EndsWith(name, ".tr4")) return true;
    return false;
}

std::vector<SwapModel::Item> SwapModel::WorkList(std::int32_t code) const {
    const Ready files = ReadyFiles(code);
    std::vector<Item> items;
    const auto all = [&](const char* end, const std::string& folder) {
        for (const auto& [name, bytes] : files)
            if (EndsWith(name, end)) items.push_back({name, folder + name, bytes});
    };
    const auto one = [&](const std::string& name) {
        if (const auto found = files.find(name); found != files.end())
            items.push_back({name, name, found->second});
    };
    all(".dat", "");
    all(".h", "");
    one("load.bmp");
    one("error.log");
    one("edgeptr.pcx");
    const auto config = std::find_if(files.begin(), files.end(),
                                     [](const auto& file) { return EndsWith(file.first, ".mcf"); });
    if (config != files.end()) {
        const std::string movie = MovieOf(config->second);
        if (!EndsWith(movie, ".wav")) one(movie);
        one(config->first);
    }
    all(".tr4", "data/");
    all(".pak", "data/");
    all(".wav", "audio/");
    return items;
}

std::optional<std::string> SwapModel::LanguageFile(const std::vector<Item>& items) const {
    std::optional<std::string> language;
    for (const auto& [name, bytes] : trle_)
        if (!language && name.find('/') == std::string::npos && EndsWith(name, ".dat") &&
            name != "script.dat")
            language = name;
    if (!language) return std::nullopt;
    bool brings = false;
    for (const Item& item : items) {
        if (item.name == *language) return std::nullopt;
        brings = brings || (EndsWith(item.name, ".dat") && item.name != "script.dat");
    }
    return brings ? language : std::nullopt;
}

void SwapModel::StashInto(std::int32_t code) {
    FileMap& stash = stash_[code];
    const bool add = code == 0 && original_waits_;
    if (!add) stash.clear();
    for (const auto& [name, bytes] : SavesOf(trle_)) {
        const auto old = stash.find(name);
        if (old == stash.end() || SerialOf(old->second) < SerialOf(bytes)) stash[name] = bytes;
        trle_.erase(name);
    }
}

void SwapModel::BringBack(std::int32_t code) {
    for (const auto& [name, bytes] : stash_[code])
        trle_[name] = bytes;
}

void SwapModel::TakeOut() {
    StashInto(current_);
    for (const std::string& path : copied_)
        if (full_ || !path.starts_with("audio/")) trle_.erase(path);
    for (const std::string& path : overwritten_) {
        trle_.erase(path); // a copy deletes its target first
        if (const auto original = backup_.find(path); original != backup_.end())
            trle_[path] = original->second;
    }
    copied_.clear();
    overwritten_.clear();
    marker_.reset();
    current_ = 0;
}

std::int32_t SwapModel::RemovePreviousLevel(std::int32_t code) {
    const std::int32_t previous = current_;
    if (previous != 0 && previous == code) return previous;
    if (previous == 0)
        StashInto(0);
    else
        TakeOut();
    original_waits_ = true;
    return previous;
}

void SwapModel::CopyLevel(std::int32_t code) {
    const std::vector<Item> items = WorkList(code);
    const std::optional<std::string> language = LanguageFile(items);
    for (const Item& item : items) {
        if (trle_.count(item.target) != 0) overwritten_.push_back(item.target);
        trle_[item.target] = item.bytes;
        copied_.push_back(item.target);
    }
    if (language) {
        trle_.erase(*language);
        overwritten_.push_back(*language);
    }
    const std::string digits = std::to_string(code);
    marker_ = Lower(
        ": Don't remove this file!\r\n"
        ": It is necessary at Kelvash \r\n"
        ": to know current configuration in TRLE\r\n"
        " \r\n"
        "#LEVEL_CODE=" +
        std::string(4 - digits.size(), '0') + digits + "#\r\n" + "#LEVEL_NAME=" + levels_.at(code).ansi_name +
        "#\r\n" + "#OVERWROTEN_FILES=" + Joined(overwritten_) + "#\r\n" + "#COPIED_FILES=" + Joined(copied_) +
        "#\r\n");
}

bool SwapModel::InstallLevel(std::int32_t code) {
    if (RemovePreviousLevel(code) == code && code != 0) return true;
    if (!(code == 0 || HasTr4(code))) return false;
    BringBack(code);
    if (code != 0) CopyLevel(code);
    current_ = code;
    original_waits_ = false;
    return true;
}

void SwapModel::FullRestore() {
    InstallLevel(0);
    for (auto file = trle_.begin(); file != trle_.end();) {
        const std::string& name = file->first;
        const bool root = name.find('/') == std::string::npos;
        const bool stays = EndsWith(name, ".exe") || EndsWith(name, ".isu") || EndsWith(name, ".lnk");
        const bool level = name.starts_with("data/") && (EndsWith(name, ".tr4") || EndsWith(name, ".pak"));
        const bool whole = full_ && (name.starts_with("audio/") || name.starts_with("graphics/wads/") ||
                                     name.starts_with("sound/samples/") || name.starts_with("script/"));
        file = (root && !stays) || level || whole ? trle_.erase(file) : std::next(file);
    }
    for (const auto& [name, bytes] : backup_) {
        const bool root = name.find('/') == std::string::npos;
        const bool whole = full_ && (name.starts_with("audio/") || name.starts_with("graphics/wads/") ||
                                     name.starts_with("sound/samples/") || name.starts_with("script/"));
        if (root || name.starts_with("data/") || whole) trle_[name] = bytes;
    }
    original_waits_ = true;
}

void SwapModel::PlayerWrites(const std::string& name, const std::string& bytes) {
    trle_[name] = bytes;
    alive_[current_][name] = bytes;
}

void SwapModel::PlayerDeletes(const std::string& name) {
    trle_.erase(name);
    alive_[current_].erase(name);
}

void SwapModel::LevelFileDeleted(std::int32_t code, const std::string& name) {
    missing_[code].insert(Lower(name));
}

void SwapModel::LevelFilesRepaired(std::int32_t code) {
    missing_[code].clear();
}

} // namespace kelvash::test
