#include "ui/Dialog_Progress.h"

#include <QVBoxLayout>

namespace kelvash::ui {

Dialog_Progress::Dialog_Progress(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Progress"));
    setWindowModality(Qt::ApplicationModal);
    Set_Caption_Texts();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Info);
    layout->addWidget(ProgressBar1);
    Label_Info->setWordWrap(true);
    ProgressBar1->setRange(0, 100);
    ProgressBar1->setValue(0);
    setMinimumWidth(fontMetrics().averageCharWidth() * 64);
}

void Dialog_Progress::Set_Caption_Texts() {
    setWindowTitle(Caption(MessageId::kProgressCaption));
}

} // namespace kelvash::ui
