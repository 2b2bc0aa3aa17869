#include "ui/Dialog_GetDir.h"

namespace kelvash::ui {

Dialog_GetDir::Dialog_GetDir(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_GetDir"));
    Set_Caption_Texts();
}

void Dialog_GetDir::Set_Caption_Texts() {
    setWindowTitle(Caption(MessageId::kGetDirCaption));
}

void Dialog_GetDir::ImpostaValori(const std::string& caption, const std::string& start) {
    if (!caption.empty()) setWindowTitle(ShownText(caption));
    Folder = start;
}

} // namespace kelvash::ui
