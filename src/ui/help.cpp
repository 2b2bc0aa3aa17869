#include "ui/help.h"

#include <QPushButton>
#include <QShortcut>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/user.h"
#include "ui/Dialog_Testo.h"
#include "ui/fragments.h"
#include "ui/messages.h"

namespace kelvash::ui {

void ShowHelp(QWidget* parent, HelpMark mark) {
    const std::string path = AppFolder() + LoadFragment(fragment::kHelpName);
    const std::optional<std::string> text = ReadFileBytes(path);
    if (!text) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kHelpMissing, {path}));
        return;
    }
    Dialog_Testo form(parent);
    form.ImpostaValori(LoadMessage(msg::kHelpCaption), *text, static_cast<int>(mark));
    form.exec();
}

void ConnectHelp(QWidget* form, QPushButton* button, HelpMark mark) {
    const auto show = [form, mark] { ShowHelp(form, mark); };
    QObject::connect(button, &QPushButton::clicked, form, show);
    QObject::connect(new QShortcut(QKeySequence(kHelpKey), form), &QShortcut::activated, form, show);
}

} // namespace kelvash::ui
