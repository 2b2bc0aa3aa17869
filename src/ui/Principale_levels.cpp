// The commands of the main form on levels and on the Archive: thin calls of the logic.
#include <QAction>
#include <QMenu>

#include "core/archive.h"
#include "core/kept_folders.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/tr4_info.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "intake/export_level.h"
#include "intake/new_level.h"
#include "ui/Dialog_Autore.h"
#include "ui/Dialog_NewLevel.h"
#include "ui/Dialog_PrefArc.h"
#include "ui/Principale.h"
#include "ui/forms_user.h"

namespace kelvash::ui {

void Principale::ConnectLevelMenu() {
    Connect("mnu_AddLevel", [this] { AddLevel({}, {}); });
    Connect("mnu_Property", [this] { intake::ShowProperty(NewLevelForm(user_, this)); });
    Connect("mnu_ShowAutoreInfo", [this] { ShowAuthor(); });
    Connect("mnu_RemoveLevel", [] { core::RemoveLevel(); });
    Connect("mnu_Export", [] { intake::ExportLevel(); });
    Connect("mnu_PrefArchive", [this] { ShowPreferences(); });
    Connect("mnu_MoveArc", [] { core::MoveArchive(); });
    Connect("mnu_Recover", [this] {
        if (core::RecoverArchive()) Text_Search->clear();
    });
    Connect("mnu_Kept", [] { core::TakeKeptLevel(); });
    Connect("mnu_ControllaUguali", [] { core::ControllaUguali(); });
    Connect("mnu_CreaInfoTr4", [] { core::CreaInfoTr4(); });
    Combo_Livelli->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(Combo_Livelli, &QListView::customContextMenuRequested, this, &Principale::ShowLevelMenu);
}

// A filter that hides the new level would hide it from the player who has just added it.
void Principale::AddLevel(const std::string& zip, const std::vector<std::string>& sources) {
    if (intake::AddLevel(zip, NewLevelForm(user_, this, sources))) Text_Search->clear();
}

void Principale::TakeSources(const std::vector<std::string>& paths) {
    if (paths.size() > 1)
        intake::AddLevels(paths);
    else if (EndsWithNoCase(paths.front(), ".zip") && FileExists(paths.front()))
        AddLevel(paths.front(), {});
    else
        AddLevel({}, paths);
}

void Principale::ShowAuthor() {
    Dialog_Autore form(this);
    form.ImpostaValori(core::LevelIndex(core::SelectedLevel()));
    form.exec();
}

void Principale::ShowPreferences() {
    Dialog_PrefArc form(this);
    form.ImpostaValori();
    form.exec();
}

void Principale::ShowLevelMenu(const QPoint& where) {
    if (!Combo_Livelli->indexAt(where).isValid()) return;
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("Menu_Level"));
    for (const char* name : {"mnu_Property", "mnu_ShowAutoreInfo", "mnu_Export", "mnu_RemoveLevel"})
        menu.addAction(Command(name));
    menu.exec(Combo_Livelli->viewport()->mapToGlobal(where));
}

} // namespace kelvash::ui
