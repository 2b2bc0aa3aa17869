#include "ui/keys.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>
#include <algorithm>

#include "ui/form_support.h"

namespace kelvash::ui {

namespace {

void AddAction(const QAction* action, std::vector<KeyLine>& lines) {
    if (action->menu() != nullptr) {
        for (const QAction* inside : action->menu()->actions())
            AddAction(inside, lines);
        return;
    }
    if (IsNotYet(action) || action->shortcuts().isEmpty()) return;
    const QList<QKeySequence> keys = action->shortcuts();
    lines.push_back(LineOf({keys.begin(), keys.end()}, WithoutLetter(action->text())));
}

// A menu and a list of the same name are one group.
void AddGroup(const QString& title, std::vector<KeyLine> lines, std::vector<KeyGroup>& groups) {
    if (lines.empty()) return;
    const QString name = WithoutLetter(title);
    const auto known = std::find_if(groups.begin(), groups.end(),
                                    [&name](const KeyGroup& group) { return group.title == name; });
    if (known == groups.end())
        groups.push_back({name, std::move(lines)});
    else
        known->lines.insert(known->lines.end(), lines.begin(), lines.end());
}

// A tool bar shows commands of the menus as well: those are told there.
std::vector<KeyLine> LinesOfBar(const QToolBar& bar, const QMenuBar& menus) {
    std::vector<KeyLine> lines;
    for (const QAction* action : bar.actions()) {
        const QList<QObject*> owners = action->associatedObjects();
        const bool in_a_menu = std::any_of(owners.begin(), owners.end(), [&menus](const QObject* owner) {
            return owner == &menus || qobject_cast<const QMenu*>(owner) != nullptr;
        });
        if (!in_a_menu) AddAction(action, lines);
    }
    return lines;
}

} // namespace

void AddKeys(QWidget* where, KeyWorks works, const std::vector<QKeySequence>& keys, const QString& words,
             const std::function<void()>& act) {
    for (const QKeySequence& key : keys) {
        auto* const shortcut = new QShortcut(key, where);
        shortcut->setContext(works == KeyWorks::InTheForm ? Qt::WindowShortcut : Qt::WidgetShortcut);
        shortcut->setWhatsThis(words);
        QObject::connect(shortcut, &QShortcut::activated, where, act);
    }
}

KeyLine LineOf(const std::vector<QKeySequence>& keys, const QString& words) {
    KeyLine line{{}, words};
    for (const QKeySequence& key : keys)
        line.keys << key.toString(QKeySequence::NativeText);
    return line;
}

std::vector<KeyLine> AddedKeys(const QWidget& where) {
    std::vector<KeyLine> lines;
    for (const QShortcut* shortcut : where.findChildren<QShortcut*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (shortcut->whatsThis().isEmpty()) continue; // one that works in every form is told once
        const KeyLine line = LineOf({shortcut->key()}, shortcut->whatsThis());
        if (!lines.empty() && lines.back().words == line.words)
            lines.back().keys << line.keys;
        else
            lines.push_back(line);
    }
    return lines;
}

std::vector<KeyGroup> KeysOf(const QMainWindow& window) {
    std::vector<KeyGroup> groups;
    const auto* const menus = window.findChild<const QMenuBar*>();
    for (const QAction* menu : menus->actions()) {
        std::vector<KeyLine> lines;
        AddAction(menu, lines);
        AddGroup(menu->text(), std::move(lines), groups);
    }
    for (const QToolBar* bar : window.findChildren<QToolBar*>())
        AddGroup(bar->windowTitle(), LinesOfBar(*bar, *menus), groups);
    for (const QWidget* control : window.findChildren<QWidget*>())
        AddGroup(control->accessibleName(), AddedKeys(*control), groups);
    return groups;
}

} // namespace kelvash::ui
