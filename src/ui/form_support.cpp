#include "ui/form_support.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QTextDocument>
#include <QTimer>
#include <QToolBar>

#include "foundation/drives.h"
#include "foundation/native_text.h"
#include "foundation/text.h"
#include "ui/messages.h"

namespace kelvash::ui {

namespace {

constexpr int kAfterPainting = 15; // milliseconds, in which a window that is shown is painted

// Hands out letters within one scope: a form, a menu bar, a menu.
class Letters {
  public:
    // The caption with "&" before a letter that nobody has yet.
    QString Mark(const QString& caption) {
        QString text = caption;
        text.replace(QLatin1Char('&'), QStringLiteral("&&"));
        const qsizetype at = FreeLetter(text);
        if (at >= 0) {
            taken_.insert(text.at(at).toUpper());
            text.insert(at, QLatin1Char('&'));
        }
        return text;
    }

  private:
    bool IsFree(QChar letter) const {
        return letter.isLetterOrNumber() && !taken_.contains(letter.toUpper());
    }

    // Beginnings of words first: they are what the eye finds.
    qsizetype FreeLetter(const QString& text) const {
        for (qsizetype i = 0; i < text.size(); ++i)
            if (IsFree(text.at(i)) && (i == 0 || text.at(i - 1).isSpace())) return i;
        for (qsizetype i = 0; i < text.size(); ++i)
            if (IsFree(text.at(i))) return i;
        return -1;
    }

    QSet<QChar> taken_;
};

QString MarkUnless(bool dead, Letters& letters, const QString& text) {
    return dead ? WithoutLetter(text) : letters.Mark(WithoutLetter(text));
}

// They take no room.
constexpr QChar kMayWrap(0x200B);
constexpr QChar kMayNotWrap(0x2060);

// A word that is longer than any line should count on goes on behind a folder, or wherever it has to.
QString WithWraps(const QString& word) {
    constexpr int kLongest = 40; // letters
    if (word.size() <= kLongest) return word;
    QString wrapped;
    int since = 0;
    for (const QChar letter : word) {
        wrapped += letter;
        if (letter != QLatin1Char('\\') && ++since < kLongest) continue;
        wrapped += kMayWrap;
        since = 0;
    }
    return wrapped;
}

// Properties of controls and actions.
constexpr const char* kNotYet = "kelvash_not_yet";
constexpr const char* kLettersLast = "kelvash_letters_last";

void MarkActions(const QList<QAction*>& actions) {
    Letters letters;
    for (QAction* action : actions) {
        if (action->isSeparator()) continue;
        action->setText(MarkUnless(IsNotYet(action), letters, action->text()));
        if (action->menu() != nullptr) MarkActions(action->menu()->actions());
    }
}

// Who chooses a letter first.
enum class Turn { First, Last };

Turn TurnOf(const QAbstractButton* button) {
    return button->property(kLettersLast).toBool() ? Turn::Last : Turn::First;
}

// The buttons of a form whose turn it is, but for those of its tool bars.
void MarkButtons(const QWidget* form, Letters& letters, Turn turn) {
    for (QAbstractButton* button : form->findChildren<QAbstractButton*>()) {
        if (button->text().isEmpty() || qobject_cast<QToolBar*>(button->parent()) != nullptr) continue;
        if (TurnOf(button) != turn) continue;
        button->setText(MarkUnless(IsNotYet(button), letters, button->text()));
    }
}

} // namespace

QString Caption(MessageId id, const MessageArgs& args) {
    return ShownText(LoadMessage(id, args));
}

void AfterPainting(QObject* receiver, const std::function<void()>& work) {
    // Counted from when events are looked after: at the start of the program that comes late.
    QTimer::singleShot(0, receiver, [receiver, work] { QTimer::singleShot(kAfterPainting, receiver, work); });
}

QString ShownText(const std::string& text) {
    return FromUtf8(CleanText(text)).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

QString WrappedText(const std::string& text) {
    QString wrapped, word;
    for (const QChar letter : ShownText(text) + QLatin1Char(' ')) {
        word += letter;
        if (!letter.isSpace()) continue;
        wrapped += WithWraps(word);
        word.clear();
    }
    wrapped.chop(1);
    // A line would end behind the drive, as behind any colon.
    return wrapped.replace(QLatin1String(":\\"), QLatin1Char(':') + kMayNotWrap + QLatin1Char('\\'));
}

QString WithoutWraps(QString text) {
    return text.remove(kMayWrap).remove(kMayNotWrap);
}

QString ShownLine(const std::string& text) {
    return FromUtf8(CleanLine(text));
}

QString TitleWith(const QString& title, const QString& note) {
    return note.isEmpty() ? title : title + QStringLiteral("  \u00b7  ") + note;
}

QString NativeText(const std::string& path) {
    return path.empty() ? QString() : FromUtf8(TextOfNative(NativePath(path)));
}

QString ToolTipText(const QString& text) {
    constexpr int kWide = 80; // characters; the toolkit breaks lines of mark-up alone
    if (!Qt::mightBeRichText(text) && (text.size() <= kWide || !text.contains(QLatin1Char(' ')))) return text;
    return QStringLiteral("<span>%1</span>")
        .arg(text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")));
}

void TakeLongItems(QComboBox* combo) {
    constexpr int kLeast = 12; // letters
    combo->setMinimumContentsLength(kLeast);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    QObject::connect(combo, &QComboBox::currentTextChanged, combo,
                     [combo](const QString& text) { combo->setToolTip(ToolTipText(text)); });
    QObject::connect(combo->model(), &QAbstractItemModel::rowsInserted, combo,
                     [combo](const QModelIndex&, int first, int last) {
                         for (int i = first; i <= last; ++i)
                             combo->setItemData(i, ToolTipText(combo->itemText(i)), Qt::ToolTipRole);
                     });
}

QString WithoutLetter(const QString& caption) {
    QString text = caption;
    return text.remove(QLatin1Char('&'));
}

QString WhyNotYet() {
    return Caption(msg::kWhyNotYet);
}

void TellWhy(QAction* action, const QString& why) {
    action->setToolTip(why);
    action->setStatusTip(why);
}

bool IsNotYet(const QObject* object) {
    return object->property(kNotYet).toBool();
}

void NotYet(std::initializer_list<QWidget*> controls) {
    for (QWidget* control : controls) {
        control->setEnabled(false);
        control->setToolTip(WhyNotYet());
        control->setProperty(kNotYet, true);
    }
}

void LettersLast(std::initializer_list<QWidget*> buttons) {
    for (QWidget* button : buttons)
        button->setProperty(kLettersLast, true);
}

void NotYet(QAction* action, bool not_yet) {
    action->setEnabled(!not_yet);
    if (not_yet) TellWhy(action, WhyNotYet());
    action->setProperty(kNotYet, not_yet);
}

void AssignMnemonics(QWidget* form) {
    Letters letters;
    if (const auto* const bar = form->findChild<QMenuBar*>()) {
        MarkActions(bar->actions());
        for (const QAction* action : bar->actions()) // the same keys reach these
            static_cast<void>(letters.Mark(WithoutLetter(action->text())));
    }
    MarkButtons(form, letters, Turn::First);
    for (QLabel* label : form->findChildren<QLabel*>())
        if (label->buddy() != nullptr) label->setText(letters.Mark(WithoutLetter(label->text())));
    MarkButtons(form, letters, Turn::Last);
}

} // namespace kelvash::ui
