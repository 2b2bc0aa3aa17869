// Commands that keep the Archive true to its folders.
#include <memory>

#include "cli/command.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "core/archive.h"
#include "core/maintenance.h"
#include "core/moving_messages.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "core/tr4_info.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "program/remove_level.h"
#include "swap/compression.h"

namespace kelvash::cli {

namespace {

// Runs one of the commands that ask for a folder, with the folder that was typed.
bool RunOnFolder(Session& session, const std::string& typed, MessageId question, bool (*work)()) {
    std::string folder;
    bool done = StartUpWithArchive(session, {}) && TakePath(typed, folder);
    if (done) {
        session.user.Preset({{.id = question, .answer = folder}});
        done = DoneWithoutFailure(session.user, work);
    }
    return EndSession(session) && done;
}

std::vector<ResultField> PlaceFields() {
    return {ArchiveField(),
            {.name = "folder",
             .heading = msg::kCliFolder,
             .value = [] { return std::string(Trim(core::archive.Header.SecondaryFolder)); }},
            LevelCountField()};
}

bool Remove(Session& session, const std::string& typed) {
    std::int32_t code = -1;
    const bool removed = StartUpWithArchive(session, {}) && SelectCode(typed, code) &&
                         DoneWithoutFailure(session.user, [] { return program::RemoveLevel(); });
    return EndSession(session) && removed;
}

bool Sizes(Session& session) {
    const bool counted = StartUpWithArchive(session, {}) && DoneWithoutFailure(session.user, [] {
                             core::ComputeArchiveSize(core::Report::Shown);
                             return true;
                         });
    return EndSession(session) && counted;
}

bool Equal(Session& session, std::int32_t& count) {
    if (StartUpWithArchive(session, {})) count = core::ControllaUguali();
    return EndSession(session) && count >= 0;
}

struct PrefsArguments {
    std::optional<std::string> compress; // "on" or "off"
    std::optional<std::string> mp3;      // "on" or "off"
};

bool IsOn(const std::optional<std::string>& value, bool otherwise) {
    return value ? *value == "on" : otherwise;
}

bool Prefs(Session& session, const PrefsArguments& taken) {
    bool done = StartUpWithArchive(session, {});
    const core::ArchiveHeader& header = core::archive.Header;
    if (done && (taken.compress || taken.mp3))
        done = swap::ApplyCompressionSettings(
            {IsOn(taken.compress, header.CompressFiles), IsOn(taken.mp3, header.EncodeWavInMp3)});
    return EndSession(session) && done;
}

} // namespace

Command RemoveCommand() {
    const auto code = std::make_shared<std::string>();
    return {.name = "remove",
            .about = "Takes a level out of the Archive",
            .arguments = {CodeArgument(*code)},
            .run = [code](Session& session) { return Remove(session, *code); }};
}

Command SizesCommand() {
    const auto whole = [](double bytes) { return static_cast<std::int64_t>(bytes); };
    return {.name = "sizes",
            .about = "Counts the sizes of all levels anew",
            .run = &Sizes,
            .fields = {{.name = "mainSize",
                        .heading = msg::kCliMainSize,
                        .value = [whole] { return whole(core::archive.Header.MainFolderSize); }},
                       {.name = "secondarySize", .heading = msg::kCliSecondarySize, .value = [whole] {
                            return whole(core::archive.Header.SecondaryFolderSize);
                        }}}};
}

Command EqualCommand() {
    const auto count = std::make_shared<std::int32_t>(-1);
    return {
        .name = "equal",
        .about = "Looks for levels that the Archive holds twice",
        .run = [count](Session& session) { return Equal(session, *count); },
        .fields = {{.name = "equal", .heading = msg::kCliEqualLevels, .value = [count] { return *count; }}}};
}

Command RecoverCommand() {
    const auto typed = std::make_shared<std::string>();
    return {.name = "recover",
            .about = "Makes a new Archive of a folder of LEVEL_NNNN folders",
            .arguments = {PathArgument("DIR", *typed)},
            .run =
                [typed](Session& session) {
                    return RunOnFolder(session, *typed, msg::kRecoverFolder, &core::RecoverArchive);
                },
            .fields = PlaceFields()};
}

Command MoveCommand() {
    const auto typed = std::make_shared<std::string>();
    return {.name = "move",
            .about = "Moves the Archive's level folders",
            .arguments = {PathArgument("DIR", *typed)},
            .run =
                [typed](Session& session) {
                    return RunOnFolder(session, *typed, msg::kMoveTarget, &core::MoveArchive);
                },
            .fields = PlaceFields()};
}

Command PrefsCommand() {
    const auto taken = std::make_shared<PrefsArguments>();
    return {.name = "prefs",
            .about = "Shows or sets how the Archive keeps its files",
            .arguments = {{.name = "--compress",
                           .value = &taken->compress,
                           .about = "New levels are stored compressed",
                           .choices = {"on", "off"}},
                          {.name = "--mp3",
                           .value = &taken->mp3,
                           .about = "Waves of new levels are stored as mp3",
                           .choices = {"on", "off"}}},
            .run = [taken](Session& session) { return Prefs(session, *taken); },
            .fields = {{.name = "compressFiles",
                        .heading = msg::kCliCompressFiles,
                        .value = [] { return core::archive.Header.CompressFiles; }},
                       {.name = "encodeWavInMp3", .heading = msg::kCliEncodeMp3, .value = [] {
                            return core::archive.Header.EncodeWavInMp3;
                        }}}};
}

} // namespace kelvash::cli
