#include "ui/Dialog_NewArc.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/Dialog_NewArc_messages.h"
#include "ui/help.h"

namespace kelvash::ui {

Dialog_NewArc::Dialog_NewArc(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_NewArc"));
    Set_Caption_Texts();
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(Pul_New);
    buttons->addWidget(Pul_Load);
    buttons->addStretch();
    buttons->addWidget(Pul_Help);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Info);
    layout->addLayout(buttons);
    layout->setSpacing(fontMetrics().height());
    Label_Info->setWordWrap(true);
    Pul_New->setDefault(true);
    setMinimumWidth(fontMetrics().averageCharWidth() * 70);
    for (QPushButton* button : {Pul_New, Pul_Load})
        connect(button, &QPushButton::clicked, this, [this, button] {
            Chosen = ToUtf8(button->objectName());
            accept();
        });
    ConnectHelp(this, Pul_Help, HelpMark::Archive);
}

void Dialog_NewArc::Set_Caption_Texts() {
    setWindowTitle(Caption(msg::kNewArcCaptionForm));
    Label_Info->setText(Caption(msg::kNewArcText, {kLineBreak, kLineBreak}));
    Pul_New->setText(Caption(msg::kNewArcNew));
    Pul_Load->setText(Caption(msg::kNewArcLoad));
    Pul_Help->setText(Caption(msg::kNewArcHelp));
    AssignMnemonics(this);
}

} // namespace kelvash::ui
