// The folder chooser, on the drives and paths that the logic knows.
//
// The folders of a drive are listed level by level, as they are opened. A drive's root shows as "C:\" and is
// "C:" everywhere else: that is how the logic puts names behind it.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <string>

#include "ui/field_note.h"
#include "ui/form_support.h"

namespace kelvash::ui {

class Dialog_GetDir final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_GetDir(QWidget* parent);
    void Set_Caption_Texts();
    // An empty caption leaves the form's own. The folder to start from may be missing: the nearest parent
    // that exists is shown then, or the fixed drive with the most free space.
    void ImpostaValori(const std::string& caption, const std::string& start);

    // The chosen folder as a path text without a back-slash at its end, after Accepted.
    std::string Folder;

    QLabel* const Label_Drive = Make<QLabel>(this, "Label_Drive");
    QComboBox* const Drive1 = Make<QComboBox>(this, "Drive1");
    QTreeWidget* const Dir1 = Make<QTreeWidget>(this, "Dir1");
    QLabel* const Label_PathDir = Make<QLabel>(this, "Label_PathDir");
    QLineEdit* const Text_PathDir = Make<QLineEdit>(this, "Text_PathDir");
    QLabel* const Label_Path = Make<QLabel>(this, "Label_Path");
    QLineEdit* const Text_Path = Make<QLineEdit>(this, "Text_Path");
    FieldNote* const Note_Path = Make<FieldNote>(this, "Note_Path");
    FieldNote* const Note_Name = Make<FieldNote>(this, "Note_Name");
    QPushButton* const Pul_NuovaCartella = Make<QPushButton>(this, "Pul_NuovaCartella");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Lay();
    void FillDrives();
    void ChooseDrive();
    void ShowDrive(const std::string& drive);
    void Select(const std::string& path);
    void SetFolder(const std::string& path);
    bool TakeKey(const QObject* watched, int key);
    bool TakeTypedPath();
    QString FaultOfTypedPath(const QString& typed) const;
    QString FaultOfNewName(const QString& typed) const;
    void NewFolder();
    void Accept();
    std::string FolderToStart(const std::string& start) const;
    QTreeWidgetItem* MakeItem(const std::string& path, const QString& text) const;
    void ListChildren(QTreeWidgetItem* item) const;
    QTreeWidgetItem* ChildNamed(QTreeWidgetItem* item, const std::string& name) const;

    // Looked up once: the style takes a millisecond for it.
    const QIcon folder_icon_ = style()->standardIcon(QStyle::SP_DirIcon);
    std::string folder_; // the selected one; empty without any drive
};

} // namespace kelvash::ui
