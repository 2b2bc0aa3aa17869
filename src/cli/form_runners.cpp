#include "cli/form_runners.h"

#include <optional>
#include <string>

#include "audio/audio_job.h"
#include "audio/mp3_choice.h"
#include "cd/cd_access.h"
#include "cli/cli_user.h"
#include "cli/messages.h"
#include "program/start_up.h"
#include "trle/find_trle.h"

namespace kelvash::cli {

namespace {

// A form by which a path is chosen, `path` in its record; it starts with that one.
template <FormRecord Record>
void AddPathForm(CliUser& user, std::string Record::*path) {
    user.forms.Add<Record>([&user, path](Record& choice) {
        const std::optional<std::string> chosen =
            user.AnswerForm({Record::kForm, choice.Title, choice.*path, {kOkButton, kCancelButton}});
        if (chosen) choice.*path = *chosen;
        return chosen.has_value();
    });
}

} // namespace

void AddFormRunners(CliUser& user) {
    AddPathForm<trle::TrleFolderChoice>(user, &trle::TrleFolderChoice::Folder);
    AddPathForm<cd::CdDriveChoice>(user, &cd::CdDriveChoice::Drive);
    user.forms.Add<audio::AudioJob>([](audio::AudioJob& job) {
        const ProgressDialog dialog(BarPlace::StoppableDialog, LoadMessage(msg::kCliAudioCaption));
        audio::RunAudioJob(job, dialog.bar.place);
        return true;
    });
    user.forms.Add<audio::Mp3Choice>([&user](audio::Mp3Choice& choice) {
        return user.AnswerForm({choice.kForm, {}, {}, {kOkButton, kCancelButton}}).has_value();
    });
    user.forms.Add<program::FirstArchiveChoice>([&user](program::FirstArchiveChoice& choice) {
        const std::optional<std::string> chosen =
            user.AnswerForm({choice.kForm, choice.Title, {}, {kNewArchiveButton, kLoadArchiveButton}});
        choice.MakeNew = chosen == kNewArchiveButton;
        return chosen.has_value();
    });
}

} // namespace kelvash::cli
