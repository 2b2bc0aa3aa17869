#include "ui/Dialog_Keys.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <numeric>

#include "ui/Dialog_Keys_messages.h"
#include "ui/Dialog_Testo.h"
#include "ui/form_kit.h"
#include "ui/help.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

// What the toolkit and all forms do.
KeyGroup Everywhere() {
    return {
        Caption(msg::kKeysEverywhere),
        {LineOf({Qt::Key_Tab, Qt::SHIFT | Qt::Key_Tab}, Caption(msg::kKeysTab)),
         LineOf({Qt::ALT | Qt::Key_A}, Caption(msg::kKeysLetter)),
         LineOf({Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End}, Caption(msg::kKeysArrows)),
         LineOf({Qt::Key_Space}, Caption(msg::kKeysSpace)),
         LineOf({Qt::Key_Escape}, Caption(msg::kKeysEscape)), LineOf({kHelpKey}, Caption(msg::kKeysHelp))}};
}

KeyGroup OfTheHelp() {
    return {Caption(msg::kKeysInHelp), AddedKeys(Dialog_Testo(nullptr))};
}

std::size_t LinesOf(const std::vector<KeyGroup>& groups) {
    return std::accumulate(
        groups.begin(), groups.end(), std::size_t{0},
        [](std::size_t sum, const KeyGroup& group) { return sum + group.lines.size() + 2; });
}

QHBoxLayout* Caps(const QStringList& keys) {
    auto* const caps = new QHBoxLayout;
    caps->setSpacing(space::kTight);
    for (const QString& key : keys) {
        auto* const cap = new QLabel(key);
        cap->setTextFormat(Qt::PlainText);
        cap->setFrameShape(QFrame::StyledPanel);
        cap->setAlignment(Qt::AlignCenter);
        SetType(cap, Type::Caption);
        cap->setMargin(space::kTight / 2);
        cap->setMinimumWidth(cap->sizeHint().width() + space::kClose);
        caps->addWidget(cap);
    }
    caps->addStretch();
    return caps;
}

} // namespace

Dialog_Keys::Dialog_Keys(QWidget* parent)
    : QDialog(parent),
      sheet_(new QWidget),
      columns_(new QHBoxLayout(sheet_)),
      left_(new QGridLayout),
      right_(new QGridLayout) {
    setObjectName(QStringLiteral("Dialog_Keys"));
    Set_Caption_Texts();
    columns_->setContentsMargins({});
    for (QGridLayout* column : {left_, right_}) {
        columns_->addLayout(column);
        column->setHorizontalSpacing(space::kApart);
        column->setVerticalSpacing(space::kTight);
        column->setColumnStretch(1, 1);
    }
    columns_->setSpacing(2 * space::kWide);
    Scroll_Keys->setWidget(sheet_);
    Scroll_Keys->setWidgetResizable(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Scroll_Keys, 1);
    layout->addLayout(FootRow(this, HelpMark::Keyboard, {}, {Pul_Ok}));
    layout->setSpacing(space::kWide);
    Pul_Ok->setDefault(true);
    SetMainAction(Pul_Ok);
    connect(Pul_Ok, &QPushButton::clicked, this, &QDialog::accept);
}

void Dialog_Keys::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kKeysCaption},
                       {Pul_Ok, msg::kKeysOk},
                       ControlCaption::Spoken(Scroll_Keys, msg::kKeysCaption)});
}

void Dialog_Keys::ImpostaValori(const QMainWindow& window) {
    std::vector<KeyGroup> groups = KeysOf(window);
    groups.push_back(Everywhere());
    groups.push_back(OfTheHelp());
    const std::size_t half = LinesOf(groups) / 2;
    std::size_t so_far = 0;
    for (const KeyGroup& group : groups) {
        Add(so_far < half ? left_ : right_, group);
        so_far += LinesOf({group});
    }
    for (QGridLayout* column : {left_, right_})
        column->setRowStretch(column->rowCount(), 1);
    TakeSize();
}

// The whole sheet where the screen has room for it: the columns side by side, else below each other, and what
// is too much scrolls.
void Dialog_Keys::TakeSize() {
    const QSize room = screen()->availableSize() * 9 / 10;
    const QMargins margins = layout()->contentsMargins();
    const QSize others(margins.left() + margins.right(),
                       margins.top() + margins.bottom() + layout()->spacing() + Pul_Ok->sizeHint().height());
    columns_->invalidate(); // it has counted before the lines came
    const int bar = Scroll_Keys->verticalScrollBar()->sizeHint().width();
    if (sheet_->sizeHint().width() + others.width() + bar > room.width())
        columns_->setDirection(QBoxLayout::TopToBottom);
    const QSize whole = sheet_->sizeHint() + others;
    const bool scrolls = whole.height() > room.height() || whole.width() > room.width();
    const int air = scrolls ? space::kNear : 0; // within the frame
    columns_->setContentsMargins(air, air, air, air);
    Scroll_Keys->setFrameShape(scrolls ? QFrame::StyledPanel : QFrame::NoFrame);
    Scroll_Keys->setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::NoFocus);
    const int edges = 2 * (Scroll_Keys->frameWidth() + air);
    resize((whole + QSize(edges + (scrolls ? bar : 0), edges)).boundedTo(room));
}

void Dialog_Keys::Add(QGridLayout* column, const KeyGroup& group) {
    auto* const title = new QLabel(group.title);
    title->setTextFormat(Qt::PlainText);
    SetType(title, Type::Title);
    const int first = column->rowCount();
    if (first > 1) column->setRowMinimumHeight(first, space::kApart);
    column->addWidget(title, first + 1, 0, 1, 2);
    for (const KeyLine& line : group.lines) {
        auto* const words = new QLabel(line.words);
        words->setTextFormat(Qt::PlainText);
        const int row = column->rowCount();
        column->addLayout(Caps(line.keys), row, 0);
        column->addWidget(words, row, 1);
    }
}

} // namespace kelvash::ui
