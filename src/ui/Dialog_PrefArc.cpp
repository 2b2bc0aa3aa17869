#include "ui/Dialog_PrefArc.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/archive.h"
#include "core/profile.h"
#include "swap/compression.h"
#include "ui/Dialog_PrefArc_messages.h"
#include "ui/help.h"

namespace kelvash::ui {

Dialog_PrefArc::Dialog_PrefArc(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_PrefArc"));
    Set_Caption_Texts();
    Lay();
    connect(Pul_Ok, &QPushButton::clicked, this, &Dialog_PrefArc::Accept);
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_PrefArc::reject);
    ConnectHelp(this, Pul_Help, HelpMark::ArchivePreferences);
}

void Dialog_PrefArc::Set_Caption_Texts() {
    setWindowTitle(Caption(msg::kPrefArcCaption));
    Label_Info->setText(Caption(msg::kPrefArcText));
    Label_Archive->setText(Caption(msg::kPrefArcArchive));
    Check_CompressFiles->setText(Caption(msg::kPrefArcCompress));
    Check_EncodeWavInMp3->setText(Caption(msg::kPrefArcMp3));
    Label_Mp3->setText(Caption(msg::kPrefArcMp3Later));
    Pul_Help->setText(Caption(msg::kPrefArcHelp));
    Pul_Ok->setText(Caption(msg::kPrefArcOk));
    Pul_Cancel->setText(Caption(msg::kPrefArcCancel));
    AssignMnemonics(this);
}

void Dialog_PrefArc::Lay() {
    auto* const archive = new QHBoxLayout;
    archive->addWidget(Label_Archive);
    archive->addWidget(Label_PathArchive, 1);
    auto* const mp3 = new QHBoxLayout;
    mp3->addWidget(Check_EncodeWavInMp3);
    mp3->addWidget(Label_Mp3);
    mp3->addStretch();
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(Pul_Help);
    buttons->addStretch();
    buttons->addWidget(Pul_Ok);
    buttons->addWidget(Pul_Cancel);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(archive);
    layout->addWidget(Label_Info);
    layout->addWidget(Check_CompressFiles);
    layout->addLayout(mp3);
    layout->addStretch();
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addLayout(buttons);
    Label_Info->setWordWrap(true);
    Pul_Ok->setDefault(true);
    setMinimumWidth(fontMetrics().averageCharWidth() * 76);
}

void Dialog_PrefArc::ImpostaValori() {
    const core::ArchiveHeader& header = core::archive.Header;
    Label_PathArchive->SetPath(ShownLine(core::profile.LastArchive), {});
    Check_CompressFiles->setChecked(header.CompressFiles);
    Check_EncodeWavInMp3->setChecked(header.EncodeWavInMp3);
    // No encoder stands yet: an Archive that asks for one can only be freed of it.
    Check_EncodeWavInMp3->setEnabled(header.EncodeWavInMp3);
    Label_Mp3->setVisible(!header.EncodeWavInMp3);
}

void Dialog_PrefArc::Accept() {
    accept(); // the run over all levels has a window of its own
    swap::ApplyCompressionSettings({Check_CompressFiles->isChecked(), Check_EncodeWavInMp3->isChecked()});
}

} // namespace kelvash::ui
