#include "ui/Dialog_InsertCd.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/start_up_messages.h"
#include "foundation/drives.h"
#include "ui/Dialog_InsertCd_messages.h"

namespace kelvash::ui {

Dialog_InsertCd::Dialog_InsertCd(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_InsertCd"));
    Label_Unita->setBuddy(Combo_Unita);
    Set_Caption_Texts();
    auto* const drive = new QHBoxLayout;
    drive->addWidget(Label_Unita);
    drive->addWidget(Combo_Unita);
    drive->addStretch();
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Pul_Ok);
    buttons->addWidget(Pul_Cancel);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Mex);
    layout->addLayout(drive);
    layout->addLayout(buttons);
    layout->setSpacing(fontMetrics().height());
    Pul_Ok->setDefault(true);
    setMinimumWidth(fontMetrics().averageCharWidth() * 48);
    connect(Pul_Ok, &QPushButton::clicked, this, [this] {
        Chosen = ToUtf8(Combo_Unita->currentIndex() < 0 ? Pul_Ok->objectName() : Combo_Unita->currentText());
        accept();
    });
    connect(Pul_Cancel, &QPushButton::clicked, this, [this] {
        Chosen = ToUtf8(Pul_Cancel->objectName());
        reject();
    });
}

void Dialog_InsertCd::Set_Caption_Texts() {
    setWindowTitle(Caption(msg::kCdRequestCaption));
    Label_Unita->setText(Caption(msg::kInsertCdDrive));
    Pul_Ok->setText(Caption(msg::kInsertCdOk));
    Pul_Cancel->setText(Caption(msg::kInsertCdCancel));
    AssignMnemonics(this);
}

void Dialog_InsertCd::ImpostaValori(const ChoiceForm& form) {
    setWindowTitle(ShownLine(form.caption));
    Label_Mex->setText(ShownText(form.text));
    Combo_Unita->clear();
    for (const std::string& drive : CdDrives())
        Combo_Unita->addItem(FromUtf8(drive));
    Combo_Unita->setCurrentIndex(Combo_Unita->findText(FromUtf8(form.start.substr(0, 2))));
}

} // namespace kelvash::ui
