#include "ui/Dialog_GetDir.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QResizeEvent>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <filesystem>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/native_text.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "ui/Dialog_GetDir_messages.h"
#include "ui/form_kit.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

constexpr int kPathRole = Qt::UserRole;       // QByteArray: a name need not be UTF-8
constexpr int kListedRole = Qt::UserRole + 1; // true once the sub-folders were looked for

std::string PathOf(const QTreeWidgetItem* item) {
    return item->data(0, kPathRole).toByteArray().toStdString();
}

bool IsRoot(const std::string& path) {
    return path.size() == 2;
}

QString ShownPath(const std::string& path) {
    return FromUtf8(IsRoot(path) ? path + "\\" : path);
}

QStyle::StandardPixmap PictureOf(DriveType type) {
    switch (type) {
        case DriveType::CdRom:
            return QStyle::SP_DriveCDIcon;
        case DriveType::Network:
            return QStyle::SP_DriveNetIcon;
        case DriveType::Removable:
            return QStyle::SP_DriveFDIcon;
        default:
            return QStyle::SP_DriveHDIcon;
    }
}

bool HasDrive(std::string_view path) {
    return path.size() >= 2 && path[1] == ':';
}

// A path text with "." and ".." resolved and a large drive letter.
std::string CleanPath(const std::string& path) {
    if (!HasDrive(path)) return path;
    std::vector<std::string> names;
    for (const std::string& name : Split(path.substr(2), '\\')) {
        if (name == ".." && !names.empty()) names.pop_back();
        if (!name.empty() && name != "." && name != "..") names.push_back(name);
    }
    std::string clean = FoldCase(path.substr(0, 2));
    for (const std::string& name : names)
        clean += "\\" + name;
    return clean;
}

// What a person typed while a folder was shown: a path of any kind, or one that counts from that folder.
std::string TypedPath(const std::string& typed, const std::string& folder) {
    const std::string text(Trim(typed));
    if (text.empty()) return {};
    if (HasDrive(text) || NativeFromText(text).is_absolute()) return CleanPath(PathFromUser(text));
    std::string rest = text;
    std::replace(rest.begin(), rest.end(), '/', '\\');
    return CleanPath((rest.front() == '\\' ? folder.substr(0, 2) : folder) + "\\" + rest);
}

// A link to a folder in which it lies: its content would repeat itself without end.
bool LeadsBack(const QTreeWidgetItem* item) {
    const std::filesystem::path native = NativePath(PathOf(item));
    std::error_code error;
    if (!std::filesystem::is_symlink(native, error)) return false;
    for (const QTreeWidgetItem* above = item->parent(); above != nullptr; above = above->parent())
        if (std::filesystem::equivalent(native, NativePath(PathOf(above)), error)) return true;
    return false;
}

// True if a folder may have this name on every platform: Windows drops a dot at the end.
bool IsFolderName(const std::string& name) {
    const bool control = std::any_of(name.begin(), name.end(),
                                     [](char letter) { return static_cast<unsigned char>(letter) < ' '; });
    return !control && name.back() != '.' && name.find_first_of("/\\<>:?|\"*") == std::string::npos;
}

} // namespace

Dialog_GetDir::Dialog_GetDir(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_GetDir"));
    TakeLongItems(Drive1);
    Set_Caption_Texts();
    Lay();
    FillDrives();
    connect(Drive1, &QComboBox::activated, this, &Dialog_GetDir::ChooseDrive);
    connect(Dir1, &QTreeWidget::itemExpanded, this, &Dialog_GetDir::ListChildren);
    connect(Dir1, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
        if (item != nullptr) SetFolder(PathOf(item));
    });
    Note_Path->Watch(Text_PathDir, [this](const QString& typed) { return FaultOfTypedPath(typed); });
    Note_Name->Watch(Text_Path, [this](const QString& typed) { return FaultOfNewName(typed); });
    connect(Pul_NuovaCartella, &QPushButton::clicked, this, &Dialog_GetDir::NewFolder);
    connect(Pul_Ok, &QPushButton::clicked, this, &Dialog_GetDir::Accept);
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_GetDir::reject);
}

void Dialog_GetDir::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kGetDirCaption},
                       {Label_Drive, msg::kGetDirDrive, Drive1},
                       {Label_PathDir, msg::kGetDirPath, Text_PathDir},
                       {Label_Path, msg::kGetDirNewName, Text_Path},
                       {Pul_NuovaCartella, msg::kGetDirNew, Glyph::NewFolder},
                       {Pul_Help, msg::kGetDirHelp},
                       {Pul_Ok, msg::kGetDirOk},
                       {Pul_Cancel, msg::kGetDirCancel},
                       ControlCaption::Spoken(Dir1, msg::kGetDirFolders)});
}

void Dialog_GetDir::Lay() {
    auto* const fields = new QGridLayout(this);
    fields->addWidget(Label_Drive, 0, 0);
    fields->addWidget(Drive1, 0, 1, 1, 2);
    fields->addWidget(Dir1, 1, 0, 1, 3);
    fields->addWidget(Label_PathDir, 2, 0);
    fields->addWidget(Text_PathDir, 2, 1, 1, 2);
    fields->addWidget(Note_Path, 3, 1, 1, 2);
    fields->addWidget(Label_Path, 4, 0);
    fields->addWidget(Text_Path, 4, 1);
    fields->addWidget(Pul_NuovaCartella, 4, 2);
    fields->addWidget(Note_Name, 5, 1, 1, 2);
    for (const int row : {3, 5}) { // their room is kept: the tree doesn't move when one speaks
        QWidget* const note = fields->itemAtPosition(row, 1)->widget();
        QSizePolicy policy = note->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        note->setSizePolicy(policy);
        fields->setRowMinimumHeight(row, QFontMetrics(FontOf(Type::Caption)).height());
    }
    fields->addLayout(FootRow(this, {Pul_Help, HelpMark::ChooseFolder, Pul_Ok, Pul_Cancel}), 6, 0, 1, 3);
    fields->setRowStretch(1, 1);
    fields->setColumnStretch(1, 1);
    Dir1->setHeaderHidden(true);
    Dir1->setUniformRowHeights(true);
    // A scroll bar, not an ellipsis, for what is deep or long.
    Dir1->header()->setStretchLastSection(false);
    Dir1->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    for (QWidget* control : {static_cast<QWidget*>(Dir1), Dir1->viewport(),
                             static_cast<QWidget*>(Text_PathDir), static_cast<QWidget*>(Text_Path)})
        control->installEventFilter(this);
    Dir1->setFocus();
    const int letter = fontMetrics().averageCharWidth();
    Dir1->setMinimumSize(letter * 40, fontMetrics().lineSpacing() * 8);
    resize(letter * 76, fontMetrics().lineSpacing() * 28);
}

void Dialog_GetDir::FillDrives() {
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        DriveRecord drive;
        const std::string name{letter, ':'};
        if (!DriveInfo(name, drive)) continue;
        const std::string label(Trim(drive.volume_name));
        Drive1->addItem(style()->standardIcon(PictureOf(drive.type)),
                        FromUtf8(label.empty() ? name : name + "  [" + label + "]"), FromUtf8(name));
    }
}

void Dialog_GetDir::ImpostaValori(const std::string& caption, const std::string& start) {
    if (!caption.empty()) setWindowTitle(ShownLine(caption));
    Select(FolderToStart(start));
}

std::string Dialog_GetDir::FolderToStart(const std::string& start) const {
    for (std::string path = TypedPath(start, {}); HasDrive(path); path = FolderOf(path))
        if (FolderExists(path)) return path;
    std::int64_t free_bytes = 0;
    if (std::string drive = BestFixedDrive(free_bytes); !drive.empty()) return drive;
    for (int i = 0; i < Drive1->count(); ++i) {
        std::string drive = ToUtf8(Drive1->itemData(i).toString());
        if (FolderExists(drive)) return drive;
    }
    return {};
}

void Dialog_GetDir::ChooseDrive() {
    const std::string drive = ToUtf8(Drive1->currentData().toString());
    const std::string former = folder_.substr(0, 2);
    if (drive == former) return;
    DriveRecord record;
    if (DriveInfo(drive, record) && record.ready) {
        Select(drive);
        return;
    }
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kGetDirNotReady));
    Drive1->setCurrentIndex(Drive1->findData(FromUtf8(former)));
}

// Puts a drive's root alone into the tree, unless that drive stands there.
void Dialog_GetDir::ShowDrive(const std::string& drive) {
    Drive1->setCurrentIndex(Drive1->findData(FromUtf8(drive)));
    if (Dir1->topLevelItemCount() == 1 && PathOf(Dir1->topLevelItem(0)) == drive) return;
    const QSignalBlocker quiet(Dir1); // no choice of the user's
    Dir1->clear();
    Dir1->addTopLevelItem(MakeItem(drive, ShownPath(drive)));
}

// Opens the tree down to a folder that exists.
void Dialog_GetDir::Select(const std::string& path) {
    if (path.empty()) return;
    ShowDrive(path.substr(0, 2));
    QTreeWidgetItem* item = Dir1->topLevelItem(0);
    for (const std::string& name : Split(path.substr(2), '\\')) {
        if (name.empty()) continue;
        ListChildren(item);
        item->setExpanded(true);
        item = ChildNamed(item, name);
    }
    item->setExpanded(true);
    Dir1->setCurrentItem(item);
    Dir1->scrollToItem(item);
    SetFolder(PathOf(item));
}

void Dialog_GetDir::SetFolder(const std::string& path) {
    folder_ = path;
    Text_PathDir->setText(ShownPath(path));
}

QTreeWidgetItem* Dialog_GetDir::MakeItem(const std::string& path, const QString& text) const {
    auto* const item = new QTreeWidgetItem({text});
    item->setData(0, kPathRole, QByteArray::fromStdString(path));
    item->setIcon(0, folder_icon_);
    // Whether there is anything inside is found out when it is opened.
    item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return item;
}

void Dialog_GetDir::ListChildren(QTreeWidgetItem* item) const {
    if (item->data(0, kListedRole).toBool()) return;
    item->setData(0, kListedRole, true);
    item->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
    if (LeadsBack(item)) return;
    QList<QTreeWidgetItem*> children;
    for (const std::string& path : ListFolders(PathOf(item)))
        children << MakeItem(path, FromUtf8(FileNameOf(path)));
    item->addChildren(children);
}

// The sub-folder of that name, which exists; one that the list lacks is put in its place.
QTreeWidgetItem* Dialog_GetDir::ChildNamed(QTreeWidgetItem* item, const std::string& name) const {
    QTreeWidgetItem* found = nullptr;
    int place = 0;
    for (int i = 0; i < item->childCount(); ++i) {
        QTreeWidgetItem* const child = item->child(i);
        const std::string child_name = FileNameOf(PathOf(child));
        if (child_name == name) return child;
        if (found == nullptr && EqualNoCase(child_name, name)) found = child;
        if (CompareNoCase(child_name, name) < 0) place = i + 1;
    }
    if (found != nullptr) return found;
    found = MakeItem(PathOf(item) + "\\" + name, FromUtf8(name));
    item->insertChild(place, found);
    return found;
}

// Selects what the path field holds; false, after a message, if there is no such folder.
bool Dialog_GetDir::TakeTypedPath() {
    if (Text_PathDir->text() == ShownPath(folder_) && FolderExists(folder_)) return true;
    const std::string typed = ToUtf8(Text_PathDir->text());
    const std::string path = TypedPath(typed, folder_);
    if (FolderExists(path)) {
        Select(path);
        return true;
    }
    TellCritical(LoadMessage(msg::kGetDirMissing) + (path.empty() ? typed : path));
    return false;
}

QString Dialog_GetDir::FaultOfTypedPath(const QString& typed) const {
    const std::string path = TypedPath(ToUtf8(typed), folder_);
    return path.empty() || FolderExists(path) ? QString() : Caption(msg::kGetDirNoteMissing);
}

QString Dialog_GetDir::FaultOfNewName(const QString& typed) const {
    const std::string name(Trim(ToUtf8(typed)));
    if (name.empty()) return {};
    if (!IsFolderName(name)) return Caption(msg::kGetDirNoteLetters);
    return FolderExists(folder_ + "\\" + name) ? Caption(msg::kGetDirNoteTaken) : QString();
}

void Dialog_GetDir::NewFolder() {
    const std::string name(Trim(ToUtf8(Text_Path->text())));
    if (name.empty()) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kGetDirNoName));
        Text_Path->setFocus();
        return;
    }
    if (!TakeTypedPath()) return;
    const std::string path = folder_ + "\\" + name;
    if (IsFolderName(name) && FolderExists(path)) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kGetDirExists, {path}));
        return;
    }
    if (!IsFolderName(name) || !CreateFolder(path)) {
        TellCritical(LoadMessage(msg::kGetDirCannotMake, {path}));
        return;
    }
    Text_Path->clear();
    Select(path);
    Dir1->setFocus();
}

void Dialog_GetDir::Accept() {
    if (!TakeTypedPath()) return;
    Folder = folder_;
    accept();
}

void Dialog_GetDir::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (Dir1->currentItem() != nullptr) Dir1->scrollToItem(Dir1->currentItem());
}

bool Dialog_GetDir::eventFilter(QObject* watched, QEvent* event) {
    // The bar of the selection reaches across the tree.
    if (watched == Dir1->viewport() && event->type() == QEvent::Resize)
        Dir1->header()->setMinimumSectionSize(static_cast<QResizeEvent*>(event)->size().width());
    return event->type() == QEvent::KeyPress && TakeKey(watched, static_cast<QKeyEvent*>(event)->key());
}

// Keys that mean something else here than in any form; true if the key was one.
bool Dialog_GetDir::TakeKey(const QObject* watched, int key) {
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (enter && watched == Text_Path) {
        NewFolder();
        return true;
    }
    if (enter && watched == Text_PathDir && Text_PathDir->text() != ShownPath(folder_)) {
        static_cast<void>(TakeTypedPath()); // it tells
        return true;
    }
    // The tree's own key for opening everything below an item would list a whole disk.
    return watched == Dir1 && key == Qt::Key_Asterisk;
}

} // namespace kelvash::ui
