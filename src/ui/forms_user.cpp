#include "ui/forms_user.h"

#include <QApplication>
#include <QFileDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTreeView>
#include <algorithm>
#include <utility>

#include "foundation/drives.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "ui/Dialog_GetDir.h"
#include "ui/form_runners.h"
#include "ui/form_support.h"
#include "ui/look.h"
#include "ui/message_box.h"
#include "ui/messages.h"
#include "ui/window_state.h"

namespace kelvash::ui {

namespace {

QMessageBox::Icon IconOf(MessageStyle style) {
    switch (style) {
        case MessageStyle::Critical:
            return QMessageBox::Critical;
        case MessageStyle::Question:
            return QMessageBox::Question;
        case MessageStyle::Exclamation:
            return QMessageBox::Warning;
        case MessageStyle::Plain:
            return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons OfferedBy(Buttons buttons) {
    switch (buttons) {
        case Buttons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case Buttons::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case Buttons::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case Buttons::AbortRetryIgnore:
            return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton ButtonOf(Answer answer) {
    switch (answer) {
        case Answer::Yes:
            return QMessageBox::Yes;
        case Answer::No:
            return QMessageBox::No;
        case Answer::Ok:
            return QMessageBox::Ok;
        case Answer::Cancel:
            return QMessageBox::Cancel;
        case Answer::Abort:
            return QMessageBox::Abort;
        case Answer::Retry:
            return QMessageBox::Retry;
        case Answer::Ignore:
            return QMessageBox::Ignore;
        case Answer::None:
            break;
    }
    return QMessageBox::NoButton;
}

Answer AnswerOf(int button) {
    switch (button) {
        case QMessageBox::Yes:
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        case QMessageBox::Ok:
            return Answer::Ok;
        case QMessageBox::Abort:
            return Answer::Abort;
        case QMessageBox::Retry:
            return Answer::Retry;
        case QMessageBox::Ignore:
            return Answer::Ignore;
        default:
            return Answer::Cancel;
    }
}

// The one of two answers that loses something.
Answer LosingAnswer(Buttons buttons, MessageId question) {
    const bool yes_no = buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel;
    const std::optional<Harm> harm = HarmOf(question);
    if (harm == Harm::YesLoses && buttons != Buttons::AbortRetryIgnore)
        return yes_no ? Answer::Yes : Answer::Ok;
    return harm == Harm::NoLoses && yes_no ? Answer::No : Answer::None;
}

QString NativeStart(const FileDialog& dialog) {
    if (dialog.folder.empty()) return FromUtf8(dialog.name); // where the user was last
    const std::string name = dialog.name.empty() ? std::string() : "\\" + dialog.name;
    return NativeText(dialog.folder + name);
}

} // namespace

QString QtFilter(const std::string& pipe_form) {
    const std::vector<std::string> parts = Split(pipe_form, '|');
    QStringList filters;
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
        const QString text = FromUtf8(parts[i].substr(0, parts[i].find(" (")));
        QString masks = FromUtf8(parts[i + 1]).replace(QLatin1Char(';'), QLatin1Char(' '));
        if (masks == QLatin1String("*.*")) masks = QStringLiteral("*");
        filters << text + QStringLiteral(" (") + masks + QLatin1Char(')');
    }
    return filters.join(QStringLiteral(";;"));
}

void FormsUser::SetBeforeWaiting(std::function<void()> before) {
    before_waiting_ = std::move(before);
    since_before_.start();
}

void FormsUser::BeforeWaiting() {
    // Taken first: what it shows may pump events.
    if (const auto before = std::exchange(before_waiting_, {})) before();
}

QWidget* FormsUser::ParentOfBoxes() {
    BeforeWaiting();
    return WindowOnTop();
}

QWidget* FormsUser::WindowOnTop() const {
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal != nullptr) return modal;
    // Before it is shown, the main window's place says nothing.
    return main_window_ != nullptr && main_window_->isVisible() ? main_window_.data() : nullptr;
}

int FormsUser::RunBox(MessageStyle style, const std::string& text, const BoxButtons& buttons) {
    MessageBox box(IconOf(style), Caption(msg::kBoxTitle), QMessageBox::StandardButtons(buttons.offered),
                   ParentOfBoxes());
    box.Say(text);
    box.SetAnswers(ButtonOf(buttons.willing), ButtonOf(buttons.harmless));
    if (QAbstractButton* const losing = box.button(ButtonOf(buttons.losing))) SetDestructive(losing);
    return box.exec();
}

void FormsUser::Message(MessageStyle style, const MessageText& text) {
    RunBox(style, text, {QMessageBox::Ok, Answer::Ok, Answer::Ok});
}

Answer FormsUser::Ask(Buttons buttons, MessageStyle style, const MessageText& text) {
    return AnswerOf(RunBox(style, text,
                           {OfferedBy(buttons), WillingAnswer(buttons, text), HarmlessAnswer(buttons, text),
                            LosingAnswer(buttons, text.id)}));
}

std::optional<std::string> FormsUser::Input(const std::string& title, const MessageText& text,
                                            const std::string& initial) {
    QInputDialog dialog(ParentOfBoxes());
    dialog.setObjectName(QStringLiteral("InputBox"));
    dialog.setWindowTitle(ShownLine(title));
    dialog.setLabelText(ShownText(text));
    for (QLabel* label : dialog.findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText); // as in a box
    dialog.setTextValue(ShownLine(initial));
    if (AsksPassword(text.id)) dialog.setTextEchoMode(QLineEdit::Password);
    dialog.setMinimumWidth(dialog.fontMetrics().averageCharWidth() * 56); // a file's name has room
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return ToUtf8(dialog.textValue());
}

std::optional<std::string> FormsUser::PathOfFile(const QString& chosen) {
    if (chosen.isEmpty()) return std::nullopt;
    const std::filesystem::path native(chosen.toStdU16String());
    std::string path = DosPath(native);
    if (!path.empty()) return path;
    TellCritical(LoadMessage(msg::kFileNotOnDrive) + ToUtf8(chosen));
    return std::nullopt;
}

namespace {

// The name has what room the other columns don't need; the desktop's own dialog has no such list.
int RunFileDialog(QFileDialog& window) {
    for (auto* const list : window.findChildren<QTreeView*>()) {
        list->header()->setStretchLastSection(false);
        list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    RestoreFileDialog(window);
    const int result = window.exec();
    SaveFileDialog(window);
    return result;
}

} // namespace

std::optional<std::string> FormsUser::OpenFile(const FileDialog& dialog) {
    QFileDialog window(ParentOfBoxes(), ShownText(dialog.title), NativeStart(dialog),
                       QtFilter(dialog.filter));
    window.setFileMode(QFileDialog::ExistingFile);
    if (!dialog.name.empty()) window.selectFile(NativeStart(dialog));
    const bool chosen = RunFileDialog(window) == QDialog::Accepted;
    return PathOfFile(chosen ? window.selectedFiles().value(0) : QString());
}

namespace {

// The first extension of a filter as Qt writes it, without its dot: "bmp" of "Bitmaps (*.bmp)".
QString SuffixOf(const QString& filter) {
    const qsizetype start = filter.lastIndexOf(QLatin1String("(*.")) + 3;
    return start < 3 ? QString()
                     : filter.mid(start).section(QLatin1Char(')'), 0, 0).section(QLatin1Char(' '), 0, 0);
}

// Another kind of file was chosen: a name that is typed now is one of that kind, and so is the one that
// stands there, if it was of the former one.
void TakeKind(QFileDialog& window, const QString& filter) {
    const QString former = window.defaultSuffix();
    const QString suffix = SuffixOf(filter);
    if (suffix.isEmpty() || suffix == QLatin1String("*")) return;
    window.setDefaultSuffix(suffix);
    const QFileInfo file(window.selectedFiles().value(0));
    if (!former.isEmpty() && file.suffix().compare(former, Qt::CaseInsensitive) == 0 && !file.isDir())
        window.selectFile(file.completeBaseName() + QLatin1Char('.') + suffix);
}

// A proposed name stands under the filter of its own kind.
void SelectKindOf(QFileDialog& window, const std::string& name) {
    const QString suffix = QFileInfo(FromUtf8(name)).suffix().toLower();
    if (suffix.isEmpty()) return;
    for (const QString& filter : window.nameFilters()) {
        if (SuffixOf(filter) != suffix) continue;
        window.selectNameFilter(filter);
        window.setDefaultSuffix(suffix);
        return;
    }
}

} // namespace

std::optional<std::string> FormsUser::SaveFile(const FileDialog& dialog) {
    QFileDialog window(ParentOfBoxes(), ShownText(dialog.title), NativeStart(dialog),
                       QtFilter(dialog.filter));
    window.setAcceptMode(QFileDialog::AcceptSave);
    window.selectFile(NativeStart(dialog));
    // A name typed without an extension takes that of the filter, before a file of that name is asked about.
    const std::vector<std::string> parts = Split(dialog.filter, '|');
    const std::string extension =
        parts.size() > 1 ? ExtensionOf(Split(parts[1], ';').front()) : std::string();
    if (!extension.empty() && extension != ".*") window.setDefaultSuffix(FromUtf8(extension.substr(1)));
    SelectKindOf(window, dialog.name);
    connect(&window, &QFileDialog::filterSelected, &window,
            [&window](const QString& filter) { TakeKind(window, filter); });
    if (RunFileDialog(window) != QDialog::Accepted) return std::nullopt;
    return PathOfFile(window.selectedFiles().value(0));
}

std::optional<std::string> FormsUser::ChooseFolder(const MessageText& caption, const std::string& start) {
    Dialog_GetDir dialog(ParentOfBoxes());
    dialog.ImpostaValori(caption, start);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.Folder;
}

} // namespace kelvash::ui
