#include "ui/Dialog_PrefArc.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/archive.h"
#include "core/profile.h"
#include "swap/compression.h"
#include "ui/Dialog_PrefArc_messages.h"
#include "ui/form_kit.h"

namespace kelvash::ui {

Dialog_PrefArc::Dialog_PrefArc(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_PrefArc"));
    Set_Caption_Texts();
    Lay();
    connect(Pul_Ok, &QPushButton::clicked, this, &Dialog_PrefArc::Accept);
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_PrefArc::reject);
}

void Dialog_PrefArc::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kPrefArcCaption},
                       {Label_Info, msg::kPrefArcText},
                       {Label_Archive, msg::kPrefArcArchive},
                       {Check_CompressFiles, msg::kPrefArcCompress},
                       {Check_EncodeWavInMp3, msg::kPrefArcMp3},
                       {Pul_Help, msg::kPrefArcHelp},
                       {Pul_Ok, msg::kPrefArcOk},
                       {Pul_Cancel, msg::kPrefArcCancel}});
}

void Dialog_PrefArc::Lay() {
    auto* const archive = new QHBoxLayout;
    archive->addWidget(Label_Archive);
    archive->addWidget(Label_PathArchive, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(archive);
    layout->addWidget(Label_Info);
    layout->addWidget(Check_CompressFiles);
    layout->addWidget(Check_EncodeWavInMp3);
    layout->addStretch();
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::ArchivePreferences, Pul_Ok, Pul_Cancel}));
    Explain(Label_Info);
    layout->addStrut(fontMetrics().averageCharWidth() * 76);
}

void Dialog_PrefArc::ImpostaValori() {
    const core::ArchiveHeader& header = core::archive.Header;
    Label_PathArchive->SetPath(ShownLine(core::profile.LastArchive), {});
    Check_CompressFiles->setChecked(header.CompressFiles);
    Check_EncodeWavInMp3->setChecked(header.EncodeWavInMp3);
}

void Dialog_PrefArc::Accept() {
    accept(); // the run over all levels has a window of its own
    const JobScope job;
    swap::ApplyCompressionSettings({Check_CompressFiles->isChecked(), Check_EncodeWavInMp3->isChecked()});
}

} // namespace kelvash::ui
