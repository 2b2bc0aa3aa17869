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
    if (auto* const open = qobject_cast<Dialog_Testo*>(parent); open != nullptr && open->Shows(*text)) {
        open->GoToMark(static_cast<int>(mark));
        return;
    }
    Dialog_Testo form(parent);
    form.ImpostaValori(LoadMessage(msg::kHelpCaption), *text, static_cast<int>(mark));
    form.exec();
}

void ConnectHelp(QPushButton* button, QWidget* form, HelpMark mark) {
    QObject::connect(button, &QPushButton::clicked, form, [form, mark] { ShowHelp(form, mark); });
}

void ConnectHelpKey(QWidget* form, HelpMark mark) {
    QObject::connect(new QShortcut(QKeySequence(kHelpKey), form), &QShortcut::activated, form,
                     [form, mark] { ShowHelp(form, mark); });
}

} // namespace kelvash::ui
