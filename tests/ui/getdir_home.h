// The form that chooses a folder, over a drive with a few.
#pragma once

#include <QTest>

#include "support/test_home.h"
#include "support/ui_home.h"
#include "ui/Dialog_GetDir.h"

namespace kelvash::test {

class GetDirHome : public UiHome<TestHome> {
  protected:
    GetDirHome() {
        for (const char* folder : {"Games/beta/two", "Games/Alpha", "Games/gamma", "Zips"})
            std::filesystem::create_directories(drive / folder);
    }

    void Open(const std::string& start, const std::string& caption = {}) {
        form.ImpostaValori(caption, start);
        form.show();
    }
    std::string Shown() const { return form.Text_PathDir->text().toStdString(); }
    std::string Selected() const { return form.Dir1->currentItem()->text(0).toStdString(); }
    // The names below an item of the tree.
    static std::vector<std::string> Below(const QTreeWidgetItem* item) {
        std::vector<std::string> names;
        for (int i = 0; i < item->childCount(); ++i)
            names.push_back(item->child(i)->text(0).toStdString());
        return names;
    }
    void Type(QLineEdit* field, const std::string& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QString::fromStdString(text));
    }
    void Enter(QWidget* field) { QTest::keyClick(field, Qt::Key_Return); }
    void MakeFolderNamed(const std::string& name) {
        Type(form.Text_Path, name);
        Press(&form, "Pul_NuovaCartella");
    }
    ui::Dialog_GetDir form{nullptr};
};

} // namespace kelvash::test
