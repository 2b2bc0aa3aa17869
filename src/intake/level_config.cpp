#include "intake/level_config.h"

#include <algorithm>
#include <limits>

#include "foundation/state.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/messages.h"

namespace kelvash::intake {

constinit LevelConfigRecord& LevelConfig = State<LevelConfigRecord>::Get();

namespace {

// Takes values from the front of a text of bytes; what it lacks makes it fail for good.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    bool AtEnd() const { return bytes_.empty(); }
    bool Integer(std::size_t width, std::int64_t& value) {
        if (bytes_.size() < width) return false;
        value = ReadInteger(bytes_.substr(0, width));
        bytes_.remove_prefix(width);
        return true;
    }
    // A text behind its length in 16 bits.
    bool Text(std::string& text) {
        std::int64_t length = 0;
        if (!Integer(2, length) || length < 0 || bytes_.size() < static_cast<std::size_t>(length))
            return false;
        text = Utf8FromAnsi(bytes_.substr(0, static_cast<std::size_t>(length)));
        bytes_.remove_prefix(static_cast<std::size_t>(length));
        return true;
    }

  private:
    std::string_view bytes_;
};

void AppendInteger(std::int64_t value, std::size_t width, std::string& bytes) {
    std::string field(width, '\0');
    WriteInteger(value, field);
    bytes += field;
}

void AppendText(std::string_view text, std::string& bytes) {
    std::string ansi = AnsiFromUtf8(text);
    ansi.resize(std::min<std::size_t>(ansi.size(), std::numeric_limits<std::int16_t>::max()));
    AppendInteger(static_cast<std::int64_t>(ansi.size()), 2, bytes);
    bytes += ansi;
}

bool Tell(MessageId id, std::string_view path) {
    TellCritical(LoadMessage(id) + std::string(path));
    return false;
}

} // namespace

ConfigFault DecodeLevelConfig(std::string_view bytes, LevelConfigRecord& config) {
    config = LevelConfigRecord();
    DecodeRecord(kConfigFields, bytes, config);
    if (bytes.size() < kConfigHeaderSize) return ConfigFault::Header;
    Reader reader(bytes.substr(kConfigHeaderSize));
    for (std::int32_t i = 0; i < config.FileCount; ++i) {
        std::string name;
        std::int64_t size = 0;
        if (!reader.Text(name) || !reader.Integer(4, size)) return ConfigFault::Entry;
        config.FileNames.push_back(std::move(name));
        config.FileSizes.push_back(static_cast<std::int32_t>(size));
    }
    config.FileCount = static_cast<std::int32_t>(config.FileNames.size());
    if (!reader.AtEnd() && !reader.Text(config.UseWads)) return ConfigFault::Entry;
    return ConfigFault::None;
}

std::string EncodeLevelConfig(const LevelConfigRecord& config) {
    std::string bytes(kConfigHeaderSize, '\0');
    LevelConfigRecord counted = config;
    counted.FileCount = static_cast<std::int32_t>(config.FileNames.size());
    EncodeRecord(kConfigFields, counted, std::span<char>(bytes));
    for (std::size_t i = 0; i < config.FileNames.size(); ++i) {
        AppendText(FileNameOf(config.FileNames[i]), bytes);
        AppendInteger(config.FileSizes[i], 4, bytes);
    }
    AppendText(config.UseWads, bytes);
    return bytes;
}

bool ReadLevelConfig(std::string_view path) {
    LevelConfig = LevelConfigRecord();
    if (!FileExists(path)) {
        TellCritical(LoadMessage(msg::kConfigNotFound, {std::string(path)}));
        return false;
    }
    const std::optional<std::string> bytes = ReadFileStart(path, kLongestConfig + 1);
    if (!bytes) return Tell(msg::kConfigCannotOpen, path);
    if (bytes->size() > kLongestConfig) return Tell(msg::kConfigTooLarge, path);
    switch (DecodeLevelConfig(*bytes, LevelConfig)) {
        case ConfigFault::Header:
            return Tell(msg::kConfigCannotReadHeader, path);
        case ConfigFault::Entry:
            return Tell(msg::kConfigCannotReadEntry, path);
        case ConfigFault::None:
            break;
    }
    return true;
}

bool WriteLevelConfig(std::string_view path) {
    std::string bytes = EncodeLevelConfig(LevelConfig);
    // The file isn't truncated: who may overwrite a longer one deletes it first. That is meant.
    const std::string old = ReadFileStart(path, kLongestConfig + 1).value_or(std::string());
    if (old.size() > bytes.size() && old.size() <= kLongestConfig) bytes += old.substr(bytes.size());
    bool opened = false;
    const auto write_all = [&](const WritePiece& write) {
        opened = true;
        return write(bytes);
    };
    return ReplaceFileBytes(path, write_all, Flush::No) ||
           Tell(opened ? msg::kConfigCannotWriteBytes : msg::kConfigCannotWrite, path);
}

std::vector<std::string> ConfigItems(std::string_view list, std::size_t group) {
    std::vector<std::string> items = Split(list, '\0');
    while (items.size() % group != 0)
        items.emplace_back();
    return items;
}

std::string AddEmptyGroup(std::string_view list, std::size_t group) {
    std::string longer(list);
    if (!longer.empty()) longer += '\0';
    return longer.append(group - 1, '\0');
}

} // namespace kelvash::intake
