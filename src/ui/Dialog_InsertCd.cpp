#include "ui/Dialog_InsertCd.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "foundation/drives.h"
#include "ui/Dialog_InsertCd_messages.h"
#include "ui/form_kit.h"

namespace kelvash::ui {

Dialog_InsertCd::Dialog_InsertCd(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_InsertCd"));
    Set_Caption_Texts();
    auto* const drive = new QHBoxLayout;
    drive->addWidget(Label_Unita);
    drive->addWidget(Combo_Unita);
    drive->addStretch();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Mex);
    Label_Mex->setWordWrap(true);
    layout->addLayout(drive);
    layout->addLayout(FootRow(this, HelpMark::SmallWindows, {}, {Pul_Ok, Pul_Cancel}));
    layout->setSpacing(fontMetrics().height());
    layout->addStrut(fontMetrics().averageCharWidth() * 48);
    connect(Pul_Ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(Pul_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void Dialog_InsertCd::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kCdRequestCaption},
                       {Label_Unita, msg::kInsertCdDrive, Combo_Unita},
                       {Pul_Ok, msg::kInsertCdOk},
                       {Pul_Cancel, msg::kInsertCdCancel}});
}

void Dialog_InsertCd::ImpostaValori(const cd::CdDriveChoice& choice) {
    setWindowTitle(ShownLine(choice.Title));
    Label_Mex->setText(WrappedText(choice.Text));
    Combo_Unita->clear();
    for (const std::string& drive : CdDrives())
        Combo_Unita->addItem(FromUtf8(drive));
    Combo_Unita->setCurrentIndex(Combo_Unita->findText(FromUtf8(choice.Drive.substr(0, 2))));
}

} // namespace kelvash::ui
