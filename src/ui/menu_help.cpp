// The menu "Help".
#include <QPixmap>

#include "core/fragments.h"
#include "ui/Dialog_Keys.h"
#include "ui/Principale.h"
#include "ui/Principale_messages.h"
#include "ui/help.h"
#include "ui/menu_commands.h"
#include "ui/message_box.h"

namespace kelvash::ui {

namespace {

void ShowAbout(QWidget* window) {
    MessageBox box(QMessageBox::NoIcon, Caption(msg::kAboutCaption), QMessageBox::Ok, window);
    box.setObjectName(QStringLiteral("About"));
    // Its name is the headline: no empty line behind it.
    box.Say(LoadMessage(msg::kAboutText, {LoadFragment(fragment::kAboutVersion), kLineBreak, ""}));
    box.setIconPixmap(
        QPixmap(QStringLiteral(":/kelvash/kelvash.png")).scaledToWidth(96, Qt::SmoothTransformation));
    box.exec();
}

void ShowKeys(Principale& window) {
    Dialog_Keys keys(&window);
    keys.ImpostaValori(window);
    keys.exec();
}

} // namespace

std::vector<MenuCommand> HelpCommands(Principale& window) {
    const auto help = [&window](HelpMark mark) { return [&window, mark] { ShowHelp(&window, mark); }; };
    return {{MenuEntry::mnu_About, EnabledWhen::Always, [&window] { ShowAbout(&window); }},
            {MenuEntry::mnu_FindHelp, EnabledWhen::Always, help(HelpMark::MainWindow)},
            {MenuEntry::mnu_HelpSaveGameMan, EnabledWhen::Always, help(HelpMark::Savegames)},
            {MenuEntry::mnu_HelpFaq, EnabledWhen::Always, help(HelpMark::Questions)},
            {MenuEntry::mnu_Keys, EnabledWhen::Always, [&window] { ShowKeys(window); }}};
}

} // namespace kelvash::ui
