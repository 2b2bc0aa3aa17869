#include "ui/Dialog_Progress.h"

#include <QVBoxLayout>

#include "ui/Dialog_Progress_messages.h"
#include "ui/form_kit.h"
#include "ui/look.h"

namespace kelvash::ui {

Dialog_Progress::Dialog_Progress(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Progress"));
    setWindowModality(Qt::ApplicationModal);
    Set_Caption_Texts();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Info);
    layout->addWidget(ProgressBar1);
    layout->addLayout(FootRow({Label_Amount}, {Pul_Stop}));
    SetExplaining(Label_Amount);
    Label_Amount->setMinimumHeight(Label_Amount->fontMetrics().height()); // with words or without
    Pul_Stop->hide();
    connect(Pul_Stop, &QPushButton::clicked, this, [this] {
        Pul_Stop->setEnabled(false);
        Q_EMIT StopWanted();
    });
    Label_Info->setWordWrap(true);
    SayOrHide(Label_Info, {}); // the title often says it all
    layout->addStrut(fontMetrics().averageCharWidth() * 64);
}

void Dialog_Progress::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kProgressCaption}, {Pul_Stop, msg::kNewLevelStop, Glyph::Stop}});
}

} // namespace kelvash::ui
