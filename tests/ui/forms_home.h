// Opens each form of the program over a small Archive.
#pragma once

#include <functional>

#include "intake/new_level.h"
#include "ui/Dialog_Autore.h"
#include "ui/Dialog_Cattura.h"
#include "ui/Dialog_ConvertAudio.h"
#include "ui/Dialog_ConvertiMp3.h"
#include "ui/Dialog_GetDir.h"
#include "ui/Dialog_Indice.h"
#include "ui/Dialog_InputTesto.h"
#include "ui/Dialog_InsertCd.h"
#include "ui/Dialog_Keys.h"
#include "ui/Dialog_ListSaveGame.h"
#include "ui/Dialog_NewArc.h"
#include "ui/Dialog_NewLevel.h"
#include "ui/Dialog_PrefArc.h"
#include "ui/Dialog_Progress.h"
#include "ui/Dialog_Resize.h"
#include "ui/Dialog_Restore.h"
#include "ui/Dialog_ScreenShot.h"
#include "ui/Dialog_SetMp3.h"
#include "ui/Dialog_Settings.h"
#include "ui/Dialog_Testo.h"
#include "ui/Dialog_TrovaTrle.h"
#include "ui/Dialog_Wait.h"
#include "ui/Dialog_Zip.h"
#include "ui/first_start.h"
#include "ui/principale_home.h"

namespace kelvash::test {

class FormsHome : public PrincipaleHome {
  protected:
    using Look = std::function<void(QWidget& form)>;

    template <class Form>
    static void Open(const Look& look) {
        Form form(nullptr);
        if constexpr (requires { form.ImpostaValori(); }) form.ImpostaValori();
        look(form);
    }
    void ForEach(const Look& look) {
        look(form);
        Open<ui::Dialog_Autore>([&](QWidget& open) {
            dynamic_cast<ui::Dialog_Autore&>(open).ImpostaValori(1);
            look(open);
        });
        Open<ui::Dialog_Cattura>(look);
        for (const auto mode : {audio::ConverterMode::DecodeMp3, audio::ConverterMode::EncodeWave,
                                audio::ConverterMode::ConvertWave})
            Open<ui::Dialog_ConvertAudio>([&](QWidget& open) {
                EXPECT_TRUE(dynamic_cast<ui::Dialog_ConvertAudio&>(open).ImpostaValori({.Mode = mode}));
                look(open);
            });
        audio::AudioJob job;
        ui::Dialog_ConvertiMp3 conversion(forms, job, nullptr);
        conversion.Timer1->blockSignals(true); // it doesn't begin
        look(conversion);
        Open<ui::Dialog_SetMp3>(look);
        Open<ui::Dialog_GetDir>(look);
        Open<ui::Dialog_Indice>(look);
        Open<ui::Dialog_InputTesto>(look);
        Open<ui::Dialog_InsertCd>(look);
        Open<ui::Dialog_Keys>([&](QWidget& open) {
            dynamic_cast<ui::Dialog_Keys&>(open).ImpostaValori(form);
            look(open);
        });
        Open<ui::Dialog_ListSaveGame>([&](QWidget& open) {
            core::SelectLevel(1);
            EXPECT_TRUE(dynamic_cast<ui::Dialog_ListSaveGame&>(open).ImpostaValori({}, false, false, false));
            look(open);
        });
        Open<ui::FirstStart>(look);
        Open<ui::Dialog_NewArc>(look);
        Open<ui::Dialog_PrefArc>(look);
        Open<ui::Dialog_Progress>(look);
        Open<ui::Dialog_Resize>(look);
        Open<ui::Dialog_ScreenShot>(look);
        Open<ui::Dialog_Settings>(look);
        Open<ui::Dialog_Testo>(look);
        Open<ui::Dialog_TrovaTrle>(look);
        Open<ui::Dialog_Wait>(look);
        Open<ui::Dialog_Zip>(look);
        ui::Dialog_Restore restore(forms, nullptr);
        look(restore);
        core::SelectLevel(1);
        const FormScope<intake::NewLevel> properties(forms.forms, [&](intake::NewLevel& level) {
            ui::Dialog_NewLevel open(forms, level, nullptr);
            look(open);
            return false;
        });
        intake::ShowProperty();
    }
};

} // namespace kelvash::test
