#include "ui/form_runners.h"

#include "audio/audio_job.h"
#include "audio/mp3_choice.h"
#include "cd/cd_access.h"
#include "intake/new_level.h"
#include "program/start_up.h"
#include "trle/find_trle.h"
#include "ui/Dialog_ConvertiMp3.h"
#include "ui/Dialog_InsertCd.h"
#include "ui/Dialog_NewArc.h"
#include "ui/Dialog_NewLevel.h"
#include "ui/Dialog_SetMp3.h"
#include "ui/Dialog_TrovaTrle.h"
#include "ui/forms_user.h"

namespace kelvash::ui {

namespace {

// A form that is handed its record by ImpostaValori, if it takes anything, and from whose public fields the
// outcome is read once it has been accepted.
template <FormRecord Record, class Form>
void Add(FormsUser& user, void (*read)(const Form& form, Record& record)) {
    user.forms.Add<Record>([&user, read](Record& record) {
        Form form(user.ParentOfBoxes());
        if constexpr (requires { form.ImpostaValori(record); }) form.ImpostaValori(record);
        if (form.exec() != QDialog::Accepted) return false;
        read(form, record);
        return true;
    });
}

} // namespace

void AddFormRunners(FormsUser& user) {
    Add<trle::TrleFolderChoice, Dialog_TrovaTrle>(
        user, [](const auto& form, auto& choice) { choice.Folder = form.Folder; });
    Add<program::FirstArchiveChoice, Dialog_NewArc>(
        user, [](const auto& form, auto& choice) { choice.MakeNew = form.MakeNew; });
    Add<cd::CdDriveChoice, Dialog_InsertCd>(
        user, [](const auto& form, auto& choice) { choice.Drive = ToUtf8(form.Combo_Unita->currentText()); });
    Add<audio::Mp3Choice, Dialog_SetMp3>(user, [](const auto& form, auto& choice) {
        choice.InsertUtility = form.Check_InsertUtiliy->isChecked();
    });
    user.forms.Add<audio::AudioJob>([&user](audio::AudioJob& job) {
        return Dialog_ConvertiMp3(user, job, user.ParentOfBoxes()).exec() == QDialog::Accepted;
    });
    // This one works on its record while it is open.
    user.forms.Add<intake::NewLevel>([&user](intake::NewLevel& level) {
        return Dialog_NewLevel(user, level, user.ParentOfBoxes()).exec() == QDialog::Accepted;
    });
}

} // namespace kelvash::ui
