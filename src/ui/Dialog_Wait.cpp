#include "ui/Dialog_Wait.h"

#include <QVBoxLayout>

#include "ui/Dialog_Wait_messages.h"
#include "ui/form_kit.h"

namespace kelvash::ui {

Dialog_Wait::Dialog_Wait(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Wait"));
    setWindowModality(Qt::ApplicationModal);
    Set_Caption_Texts();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Mex);
    Label_Mex->setWordWrap(true);
    Label_Mex->setAlignment(Qt::AlignCenter);
    Label_Mex->setMinimumHeight(fontMetrics().height() * 3);
    layout->addStrut(fontMetrics().averageCharWidth() * 48);
}

void Dialog_Wait::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kWaitCaption}});
}

} // namespace kelvash::ui
