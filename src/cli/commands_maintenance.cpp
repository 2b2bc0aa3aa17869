// Commands that keep the Archive true to its folders.
#include "cli/commands.h"
#include "core/archive.h"
#include "core/kept_folders.h"
#include "core/maintenance.h"
#include "core/moving_messages.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "core/start_up.h"
#include "core/tr4_info.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/compression.h"

namespace kelvash::cli {

namespace {

// Runs one of the commands that ask for a folder, with the folder of the options.
Result RunOnFolder(Session& session, MessageId question, bool (*run)()) {
    std::string folder;
    bool done = StartUpWithArchive(session, {}) && TakePath(session.options.path, folder);
    if (done) {
        session.user.Preset({{.id = question, .answer = folder}});
        done = DoneWithoutFailure(session.user, run);
    }
    Result result;
    result.ok = EndSession(session) && done;
    result.fields = {{"archive", std::string(Trim(core::profile.LastArchive))},
                     {"folder", std::string(Trim(core::archive.Header.SecondaryFolder))},
                     {"levels", core::archive.Header.LevelCount}};
    return result;
}

bool IsOn(const std::optional<std::string>& value, bool otherwise) {
    return value ? *value == "on" : otherwise;
}

} // namespace

Result Remove(Session& session) {
    std::int32_t code = -1;
    Result result;
    const bool removed = StartUpWithArchive(session, {}) && SelectCode(session.options.code, code) &&
                         DoneWithoutFailure(session.user, [] { return core::RemoveLevel(); });
    result.ok = EndSession(session) && removed;
    return result;
}

Result Sizes(Session& session) {
    const bool counted = StartUpWithArchive(session, {}) && DoneWithoutFailure(session.user, [] {
                             core::ComputeArchiveSize(core::Report::Shown);
                             return true;
                         });
    Result result;
    result.ok = EndSession(session) && counted;
    result.fields = {{"mainSize", static_cast<std::int64_t>(core::archive.Header.MainFolderSize)},
                     {"secondarySize", static_cast<std::int64_t>(core::archive.Header.SecondaryFolderSize)}};
    return result;
}

Result Equal(Session& session) {
    std::int32_t count = -1;
    if (StartUpWithArchive(session, {})) count = core::ControllaUguali();
    Result result;
    result.ok = EndSession(session) && count >= 0;
    result.fields = {{"equal", count}};
    return result;
}

Result Recover(Session& session) {
    return RunOnFolder(session, msg::kRecoverFolder, &core::RecoverArchive);
}

Result Move(Session& session) {
    return RunOnFolder(session, msg::kMoveTarget, &core::MoveArchive);
}

Result Kept(Session& session) {
    Result result;
    result.ok = StartUpWithArchive(session, {});
    if (result.ok && session.options.kept_folder) {
        const std::int32_t code = core::TakeKept(*session.options.kept_folder);
        result.ok = code >= 0;
        result.fields["code"] = code >= 0 ? nlohmann::ordered_json(code) : nlohmann::ordered_json();
    }
    nlohmann::ordered_json kept = nlohmann::ordered_json::array();
    if (core::ArchiveIsOpen())
        for (const core::KeptLevel& level : core::ListKept())
            kept.push_back({{"folder", level.Folder}, {"name", level.Name}, {"size", level.Bytes}});
    result.fields["kept"] = std::move(kept);
    result.ok = EndSession(session) && result.ok;
    return result;
}

Result Prefs(Session& session) {
    const Options& options = session.options;
    bool done = StartUpWithArchive(session, {});
    const core::ArchiveHeader& header = core::archive.Header;
    if (done && (options.compress || options.mp3))
        done = swap::ApplyCompressionSettings(
            {IsOn(options.compress, header.CompressFiles), IsOn(options.mp3, header.EncodeWavInMp3)});
    Result result;
    result.ok = EndSession(session) && done;
    result.fields = {{"compressFiles", header.CompressFiles}, {"encodeWavInMp3", header.EncodeWavInMp3}};
    return result;
}

} // namespace kelvash::cli
