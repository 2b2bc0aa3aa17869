#include "ui/Dialog_Zip.h"

#include <QVBoxLayout>

#include "ui/Dialog_Zip_messages.h"
#include "ui/form_kit.h"
#include "ui/look.h"

namespace kelvash::ui {

Dialog_Zip::Dialog_Zip(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Zip"));
    setWindowModality(Qt::ApplicationModal);
    Set_Caption_Texts();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Info);
    layout->addWidget(ZlibTool1);
    layout->addWidget(Label_Amount);
    SetExplaining(Label_Amount);
    Label_Amount->setMinimumHeight(Label_Amount->fontMetrics().height()); // with words or without
    Label_Info->setWordWrap(true);
    SayOrHide(Label_Info, {});
    layout->addStrut(fontMetrics().averageCharWidth() * 64);
}

void Dialog_Zip::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kZipCaption}});
}

} // namespace kelvash::ui
