#include "ui/Dialog_Testo.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>
#include <QtMath>
#include <utility>

#include "foundation/user.h"
#include "ui/Dialog_Indice.h"
#include "ui/Dialog_Testo_messages.h"
#include "ui/form_kit.h"
#include "ui/keys.h"
#include "ui/topic_highlighter.h"

namespace kelvash::ui {

namespace {

// The text area of a new window, in characters.
constexpr int kColumns = 92;
constexpr int kRows = 34;

QSize SizeOfText(const QPlainTextEdit* edit) {
    const QFontMetricsF metrics(edit->font()); // a column need not be a whole number of pixels
    // A system without a font of one width gives another one, whose letters differ.
    const double column =
        qMax(metrics.horizontalAdvance(QLatin1Char('m')), metrics.horizontalAdvance(QLatin1Char('W')));
    const int border = 2 * (edit->frameWidth() + static_cast<int>(edit->document()->documentMargin()));
    return {qCeil(kColumns * column) + border + edit->verticalScrollBar()->sizeHint().width(),
            qCeil(kRows * metrics.lineSpacing()) + border};
}

} // namespace

Dialog_Testo::Dialog_Testo(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Testo"));
    Set_Caption_Texts();
    Lay();
    highlighter_ = new TopicHighlighter(Text_File->document());
    TakeColours();
    Timer1->setSingleShot(true);
    connect(Timer1, &QTimer::timeout, this, [this] { GoToMark(mark_); });
    connect(Text_Trova, &QLineEdit::textChanged, this, &Dialog_Testo::EnableSearch);
    connect(Pul_Trova, &QPushButton::clicked, this, &Dialog_Testo::Find);
    connect(Pul_Dopo, &QPushButton::clicked, this, &Dialog_Testo::FindNext);
    connect(Pul_Prima, &QPushButton::clicked, this, &Dialog_Testo::FindPrevious);
    connect(Pul_Index, &QPushButton::clicked, this, &Dialog_Testo::ShowIndex);
    connect(Pul_Ok, &QPushButton::clicked, this, &Dialog_Testo::accept);
    ConnectKeys();
    EnableSearch();
}

void Dialog_Testo::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kTestoCaption},
                       {Pul_Trova, msg::kTestoFind, Glyph::Search},
                       {Pul_Dopo, msg::kTestoNext, Glyph::Next},
                       {Pul_Prima, msg::kTestoPrevious, Glyph::Previous},
                       {Check_ParolaIntera, msg::kTestoWholeWord},
                       {Pul_Index, msg::kTestoIndex, Glyph::Index},
                       {Pul_Ok, msg::kTestoOk},
                       ControlCaption::Spoken(Text_Trova, msg::kTestoSought),
                       ControlCaption::Spoken(Text_File, msg::kTestoText)});
}

void Dialog_Testo::Lay() {
    auto* const search = new QHBoxLayout;
    search->addWidget(Text_Trova, 1);
    search->addWidget(Pul_Trova);
    search->addWidget(Pul_Dopo);
    search->addWidget(Pul_Prima);
    search->addWidget(Check_ParolaIntera);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(search);
    layout->addWidget(Text_File, 1);
    layout->addLayout(FootRow(this, HelpMark::ReadingHelp, {Pul_Index}, {Pul_Ok}));
    Text_File->setReadOnly(true);
    Text_File->setTabChangesFocus(true);
    Text_File->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    Text_Trova->setClearButtonEnabled(true);
    Pul_Trova->setDefault(true);
    Text_Trova->setFocus();
    setSizeGripEnabled(true);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    const QSize others = sizeHint() - QSize(0, Text_File->sizeHint().height());
    const QSize text = SizeOfText(Text_File);
    const QMargins margins = layout->contentsMargins();
    const int width = qMax(others.width(), text.width() + margins.left() + margins.right());
    resize(QSize(width, others.height() + text.height()).boundedTo(screen()->availableSize() * 9 / 10));
}

void Dialog_Testo::ConnectKeys() {
    const auto add = [this](const QKeySequence& key, const QString& words, const auto& act) {
        AddKeys(this, KeyWorks::InTheForm, {key}, words, act);
    };
    add(QKeySequence::Find, Text_Trova->accessibleName(), [this] {
        Text_Trova->setFocus();
        Text_Trova->selectAll();
    });
    add(Qt::Key_F3, WithoutLetter(Pul_Dopo->text()), [this] { Pul_Dopo->click(); });
    add(Qt::SHIFT | Qt::Key_F3, WithoutLetter(Pul_Prima->text()), [this] { Pul_Prima->click(); });
}

void Dialog_Testo::ImpostaValori(const std::string& caption, const std::string& text, int mark) {
    if (!caption.empty()) setWindowTitle(ShownLine(caption));
    text_ = TextToShow(text);
    help_ = WithoutMarks(text_);
    shown_ = FromUtf8(help_.text);
    mark_ = mark;
    highlighter_->SetTitles({}); // those of the former text
    Text_File->setPlainText(shown_);
    highlighter_->SetTitles(help_.titles);
    Pul_Index->setEnabled(!HelpTopics(text_, TopicKind::Main).empty() ||
                          !HelpTopics(text_, TopicKind::Sub).empty());
}

// Wrapping, and with it the place of a line in the view, is known only now.
void Dialog_Testo::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous() || std::exchange(shown_once_, true)) return; // coming back keeps the place
    Timer1->start(0);
}

void Dialog_Testo::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && highlighter_ != nullptr) TakeColours();
}

// The text can be leafed through while the search field keeps the keyboard.
void Dialog_Testo::keyPressEvent(QKeyEvent* event) {
    static const QMap<int, QAbstractSlider::SliderAction> kSteps = {
        {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
        {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub},
        {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
        {Qt::Key_Up, QAbstractSlider::SliderSingleStepSub}};
    const auto step = kSteps.find(event->key());
    if (step == kSteps.end())
        QDialog::keyPressEvent(event);
    else
        Text_File->verticalScrollBar()->triggerAction(*step);
}

// A hit is to be seen while the keyboard stays in the search field.
void Dialog_Testo::TakeColours() {
    QPalette colours = palette();
    for (const QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText})
        colours.setBrush(QPalette::Inactive, role, palette().brush(QPalette::Active, role));
    Text_File->setPalette(colours);
    highlighter_->SetColours(palette());
}

int Dialog_Testo::ShownPosition(std::size_t position) const {
    return static_cast<int>(FromUtf8(help_.text.substr(0, position)).size());
}

std::size_t Dialog_Testo::TextPosition(int shown) const {
    return ToUtf8(shown_.left(shown)).size();
}

void Dialog_Testo::EnableSearch() {
    for (QPushButton* button : {Pul_Trova, Pul_Dopo, Pul_Prima})
        button->setEnabled(!Text_Trova->text().isEmpty());
}

// Where the reader is: at the last hit or click, or, after scrolling that away, at the top of the view.
QTextCursor Dialog_Testo::CurrentPlace() const {
    const bool in_view = Text_File->viewport()->rect().intersects(Text_File->cursorRect());
    return in_view ? Text_File->textCursor() : Text_File->cursorForPosition(QPoint(0, 0));
}

// From the end of the text the search goes on at the other one.
std::optional<TextMatch> Dialog_Testo::Match(std::size_t from, SearchDirection direction) const {
    const SearchUnit unit = Check_ParolaIntera->isChecked() ? SearchUnit::WholeWord : SearchUnit::Anywhere;
    const std::string sought = ToUtf8(Text_Trova->text());
    const std::optional<TextMatch> match = FindText(help_.text, sought, from, direction, unit);
    if (match) return match;
    const std::size_t other_end = direction == SearchDirection::Forward ? 0 : help_.text.size();
    return FindText(help_.text, sought, other_end, direction, unit);
}

// A hit that is being looked at is passed over; one that has just become visible, or grown with the typed
// text, is not.
void Dialog_Testo::Find() {
    const QTextCursor place = CurrentPlace();
    std::optional<TextMatch> match = Match(TextPosition(place.selectionStart()), SearchDirection::Forward);
    if (match && ShownPosition(match->position) == place.selectionStart() &&
        ShownPosition(match->position + match->length) == place.selectionEnd())
        match = Match(TextPosition(place.selectionEnd()), SearchDirection::Forward);
    ShowMatch(match);
}

void Dialog_Testo::FindNext() {
    ShowMatch(Match(TextPosition(CurrentPlace().selectionEnd()), SearchDirection::Forward));
}

void Dialog_Testo::FindPrevious() {
    ShowMatch(Match(TextPosition(CurrentPlace().selectionStart()), SearchDirection::Backward));
}

void Dialog_Testo::ShowMatch(const std::optional<TextMatch>& match) {
    if (!match) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kTestoNotFound));
        return;
    }
    QTextCursor hit(Text_File->document());
    hit.setPosition(ShownPosition(match->position));
    hit.setPosition(ShownPosition(match->position + match->length), QTextCursor::KeepAnchor);
    const bool in_view = Text_File->viewport()->rect().contains(Text_File->cursorRect(hit));
    Text_File->setTextCursor(hit);
    if (!in_view) Text_File->centerCursor(); // with some text around it
}

void Dialog_Testo::ShowIndex() {
    Dialog_Indice index(this);
    index.ImpostaValori(text_);
    if (index.exec() != QDialog::Accepted || !index.Position) return;
    GoTo(*index.Position);
    // Near the end of the text the topic can't be the first line of the view: its title stands out instead.
    QTextCursor title = Text_File->textCursor();
    title.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    const int top = Text_File->verticalScrollBar()->value();
    Text_File->setTextCursor(title);
    Text_File->verticalScrollBar()->setValue(top);
}

bool Dialog_Testo::Shows(const std::string& text) const {
    return text_ == TextToShow(text);
}

void Dialog_Testo::GoToMark(int mark) {
    GoTo(mark == kNoMark ? 0 : FindMark(text_, mark).value_or(0));
}

void Dialog_Testo::GoTo(std::size_t position) {
    QTextCursor place(Text_File->document());
    place.setPosition(ShownPosition(help_.PositionOf(position)));
    Text_File->setTextCursor(place);
    // The scroll bar counts lines as they are wrapped.
    const QTextBlock block = place.block();
    const QTextLine line = block.layout()->lineForTextPosition(place.positionInBlock());
    Text_File->verticalScrollBar()->setValue(block.firstLineNumber() +
                                             (line.isValid() ? line.lineNumber() : 0));
}

} // namespace kelvash::ui
