#include "ui/message_box.h"

#include <QAction>
#include <QClipboard>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

#include "ui/form_support.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/messages.h"

namespace kelvash::ui {

namespace {

// Boxes with more text than this many characters are as wide as this many characters.
constexpr int kWideText = 80;
constexpr int kWideColumns = 80;
// A first line that is longer is no headline.
constexpr int kLongestHeadline = 160;

} // namespace

MessageBox::MessageBox(Icon icon, const QString& title, StandardButtons buttons, QWidget* parent)
    : QMessageBox(icon, title, {}, buttons, parent) {
    setObjectName(QStringLiteral("MessageBox"));
    setTextFormat(Qt::PlainText); // file names and level names are no mark-up
    auto* const copy = new QAction(IconOf(Glyph::Copy), Caption(msg::kBoxCopyText), this);
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, this, &MessageBox::CopyText);
    addAction(copy);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(QGuiApplication::clipboard(), &QClipboard::changed, this, &MessageBox::CleanClipboard);
}

void MessageBox::Say(const std::string& text) {
    const QString whole = WrappedText(text);
    const qsizetype end = whole.indexOf(QLatin1Char('\n'));
    const bool headed = end > 0 && end <= kLongestHeadline && !whole.mid(end).trimmed().isEmpty();
    setText(headed ? whole.left(end) : whole);
    if (headed) setInformativeText(whole.mid(end + 1));
    for (QLabel* label : Texts()) {
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        label->setFocusPolicy(Qt::StrongFocus);
        label->setContentsMargins({});
        label->setContextMenuPolicy(Qt::ActionsContextMenu);
        label->addActions(actions());
        // A narrow box would break paths in two.
        if (whole.size() > kWideText) label->setMinimumWidth(fontMetrics().averageCharWidth() * kWideColumns);
    }
    if (headed) SetType(Texts().constFirst(), Type::Title);
}

void MessageBox::SetAnswers(StandardButton willing, StandardButton harmless) {
    closable_ = harmless != NoButton;
    if (closable_) setEscapeButton(harmless);
    if (willing != NoButton) {
        setDefaultButton(willing);
        SetMainAction(button(willing));
        return;
    }
    // Otherwise the first of them would be the default.
    for (auto* const button : findChildren<QPushButton*>())
        button->setAutoDefault(false);
}

// The headline first. Both are made by their texts.
QList<QLabel*> MessageBox::Texts() const {
    QList<QLabel*> texts;
    for (const char* name : {"qt_msgbox_label", "qt_msgbox_informativelabel"})
        if (auto* const label = findChild<QLabel*>(QString::fromLatin1(name))) texts << label;
    return texts;
}

QString MessageBox::WholeText() const {
    QStringList all;
    for (const QLabel* label : Texts())
        all << label->text();
    return all.join(QLatin1Char('\n'));
}

// What is selected, else all.
void MessageBox::CopyText() const {
    QString text = WholeText();
    for (const QLabel* label : Texts())
        if (label->hasSelectedText()) text = label->selectedText();
    QGuiApplication::clipboard()->setText(WithoutWraps(text));
}

// However a part of the text has got there. What nobody has selected isn't of this box: reading it would wait
// for the program that owns it.
void MessageBox::CleanClipboard(QClipboard::Mode mode) const {
    const QList<QLabel*> texts = Texts();
    if (std::none_of(texts.begin(), texts.end(), [](const QLabel* text) { return text->hasSelectedText(); }))
        return;
    QClipboard* const clipboard = QGuiApplication::clipboard();
    const QString text = clipboard->text(mode), clean = WithoutWraps(text);
    if (clean != text && WholeText().contains(text)) clipboard->setText(clean, mode);
}

// What a picture at the side is higher than the text stays below it.
void MessageBox::KeepTextsTogether() {
    auto* const grid = qobject_cast<QGridLayout*>(layout());
    const QList<QLabel*> texts = Texts();
    if (grid == nullptr || texts.size() < 2) return;
    int row = 0, column = 0, rows = 0, columns = 0;
    grid->getItemPosition(grid->indexOf(texts.constLast()), &row, &column, &rows, &columns);
    grid->setRowStretch(row, 1);
    for (QLabel* text : texts)
        text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

// The longest part of the text gets a page that scrolls, as much lower as the box is too high.
void MessageBox::FitIntoScreen() {
    const int too_high = height() - screen()->availableSize().height() * 19 / 20; // its frame has to fit too
    if (scrolls_ || too_high <= 0 || Texts().isEmpty()) return;
    scrolls_ = true;
    const QList<QLabel*> texts = Texts();
    QLabel* const text = *std::max_element(
        texts.begin(), texts.end(),
        [](const QLabel* one, const QLabel* other) { return one->height() < other->height(); });
    const QSize whole = text->size();
    auto* const page = Make<QScrollArea>(this, "Scroll");
    delete layout()->replaceWidget(text, page);
    page->setWidget(text);
    page->setWidgetResizable(true);
    page->setFrameShape(QFrame::NoFrame);
    page->setFocusPolicy(Qt::NoFocus); // keys that move a page come from the text
    page->setMinimumWidth(whole.width() + page->verticalScrollBar()->sizeHint().width());
    page->setFixedHeight(std::max(text->fontMetrics().height(), whole.height() - too_high));
    QEvent changed(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(this, &changed);
}

// The keyboard begins at the answers, behind the texts.
void MessageBox::showEvent(QShowEvent* event) {
    KeepTextsTogether();
    QMessageBox::showEvent(event);
    FitIntoScreen();
    const auto answers = findChildren<QPushButton*>();
    if (answers.isEmpty()) return;
    (defaultButton() != nullptr ? defaultButton() : answers.constFirst())->setFocus();
}

// Its icon is a picture, of the colours of when it was set.
void MessageBox::changeEvent(QEvent* event) {
    QMessageBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && icon() != NoIcon) setIcon(icon());
}

void MessageBox::keyPressEvent(QKeyEvent* event) {
    if (closable_ || event->key() != Qt::Key_Escape) QMessageBox::keyPressEvent(event);
}

void MessageBox::closeEvent(QCloseEvent* event) {
    if (closable_)
        QMessageBox::closeEvent(event);
    else
        event->ignore();
}

} // namespace kelvash::ui
