// The main form over an open Archive with three levels.
#pragma once

#include <QAction>
#include <QTest>

#include "core/archive.h"
#include "core/archive_file.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/session.h"
#include "support/bitmaps.h"
#include "support/swap_home.h"
#include "support/ui_home.h"
#include "ui/Principale.h"

namespace kelvash::test {

// The list: "- TRLE: Original configuration - (*)", "Alpha", "beta city", "City of Gold".
class PrincipaleHome : public UiHome<SwapHome> {
  protected:
    using Entry = ui::MenuEntry;

    PrincipaleHome() {
        AddLevel(1, "City of Gold", {{"gold.tr4", "gold"}}, {{"savegame.0", "Gate,"}});
        AddLevel(2, "Alpha", {{"alpha.tr4", "alpha"}});
        AddLevel(3, "beta city", {{"beta.tr4", "beta"}});
        core::archive.Table.Edit(1)->Note = "Choose the first entry";
        core::RefreshLevelList();
        form.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form)); // keys go to the active window
    }
    ui::Principale form{forms};

    // What the list shows, in its order.
    std::vector<std::string> Shown() const {
        std::vector<std::string> texts;
        const auto* const model = form.Combo_Livelli->model();
        for (int row = 0; row < model->rowCount(); ++row)
            texts.push_back(model->index(row, 0).data().toString().toStdString());
        return texts;
    }
    // The text of the current row; empty without one.
    std::string Current() const { return form.Combo_Livelli->currentIndex().data().toString().toStdString(); }
    void Type(const std::string& text) {
        form.Text_Search->setFocus();
        form.Text_Search->clear();
        QTest::keyClicks(form.Text_Search, QString::fromStdString(text));
    }
    void Choose(ui::MenuEntry entry) {
        QAction* const command = form.Command(entry);
        ASSERT_TRUE(command->isEnabled()) << command->objectName().toStdString();
        command->trigger();
    }
};

} // namespace kelvash::test
