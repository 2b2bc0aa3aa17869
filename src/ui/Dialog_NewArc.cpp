#include "ui/Dialog_NewArc.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/Dialog_NewArc_messages.h"
#include "ui/form_kit.h"
#include "ui/help.h"

namespace kelvash::ui {

Dialog_NewArc::Dialog_NewArc(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_NewArc"));
    Set_Caption_Texts();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Info);
    layout->addLayout(FootRow(this, HelpMark::Archive, {Pul_Help}, {Pul_New, Pul_Load}));
    layout->setSpacing(fontMetrics().height());
    Label_Info->setWordWrap(true);
    layout->addStrut(fontMetrics().averageCharWidth() * 70);
    for (QPushButton* button : {Pul_New, Pul_Load})
        connect(button, &QPushButton::clicked, this, [this, button] {
            MakeNew = button == Pul_New;
            accept();
        });
    ConnectHelp(Pul_Help, this, HelpMark::Archive);
}

void Dialog_NewArc::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kNewArcCaptionForm},
                       {Label_Info, msg::kNewArcText, {kLineBreak, kLineBreak}},
                       {Pul_New, msg::kNewArcNew, Glyph::NewArchive},
                       {Pul_Load, msg::kNewArcLoad, Glyph::OpenArchive},
                       {Pul_Help, msg::kNewArcHelp, Glyph::Help}});
}

} // namespace kelvash::ui
