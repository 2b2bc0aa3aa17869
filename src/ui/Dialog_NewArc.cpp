#include "ui/Dialog_NewArc.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/Dialog_NewArc_messages.h"
#include "ui/form_kit.h"
#include "ui/help.h"
#include "ui/look.h"

namespace kelvash::ui {

Dialog_NewArc::Dialog_NewArc(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_NewArc"));
    Set_Caption_Texts();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Info);
    layout->addLayout(FootRow({Pul_New, Pul_Load}, {Pul_Help}));
    layout->setSpacing(fontMetrics().height());
    Label_Info->setWordWrap(true);
    Pul_New->setDefault(true);
    SetMainAction(Pul_New);
    layout->addStrut(fontMetrics().averageCharWidth() * 70);
    for (QPushButton* button : {Pul_New, Pul_Load})
        connect(button, &QPushButton::clicked, this, [this, button] {
            MakeNew = button == Pul_New;
            accept();
        });
    ConnectHelp(this, Pul_Help, HelpMark::Archive);
}

void Dialog_NewArc::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kNewArcCaptionForm},
                       {Label_Info, msg::kNewArcText, {kLineBreak, kLineBreak}},
                       {Pul_New, msg::kNewArcNew},
                       {Pul_Load, msg::kNewArcLoad},
                       {Pul_Help, msg::kNewArcHelp}});
}

} // namespace kelvash::ui
