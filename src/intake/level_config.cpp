#include "intake/level_config.h"

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/messages.h"

namespace kelvash::intake {

constinit LevelConfigRecord& LevelConfig = State<LevelConfigRecord>::Get();

namespace {

bool Tell(MessageId id, std::string_view path) {
    TellCritical(LoadMessage(id) + std::string(path));
    return false;
}

} // namespace

ConfigFault DecodeLevelConfig(std::string_view bytes, LevelConfigRecord& config) {
    config = LevelConfigRecord();
    DecodeRecord(kConfigFields, bytes, config);
    if (bytes.size() < kConfigHeaderSize) return ConfigFault::Header;
    ByteReader reader(bytes.substr(kConfigHeaderSize));
    for (std::int32_t i = 0; i < config.FileCount; ++i) {
        std::string name = reader.CountedText();
        const auto size = reader.Get<std::int32_t>();
        if (reader.Failed()) return ConfigFault::Entry;
        config.FileNames.push_back(std::move(name));
        config.FileSizes.push_back(size);
    }
    config.FileCount = static_cast<std::int32_t>(config.FileNames.size());
    if (reader.Left() > 0) config.UseWads = reader.CountedText();
    return reader.Failed() ? ConfigFault::Entry : ConfigFault::None;
}

std::string EncodeLevelConfig(const LevelConfigRecord& config) {
    ByteWriter bytes;
    LevelConfigRecord counted = config;
    counted.FileCount = static_cast<std::int32_t>(config.FileNames.size());
    EncodeRecord(kConfigFields, counted, bytes);
    for (std::size_t i = 0; i < config.FileNames.size(); ++i) {
        bytes.CountedText(FileNameOf(config.FileNames[i]));
        bytes.Put<std::int32_t>(config.FileSizes[i]);
    }
    bytes.CountedText(config.UseWads);
    return bytes.Take();
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
