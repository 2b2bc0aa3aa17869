// A user's hand in a window of the real program: a plugin that Qt loads into it by
// QT_QPA_GENERIC_PLUGINS=hand.
//
// HAND_READY  a file that is made once the main form is up
// HAND_GO     a file for which it waits then
// HAND_DOES   what it does, words that a blank divides: NUMBER chooses that row of the list of levels, a name
//             triggers the command or presses the button that is called so; the program is left then
//
// Boxes get Yes or OK, forms the button of HAND_FORMS ("Dialog_Restore=Pul_Full ..."), else Pul_Ok; what has
// none of these is closed.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QGenericPlugin>
#include <QListView>
#include <QMessageBox>
#include <QTimer>

namespace {

constexpr int kLookMilliseconds = 10;

QString Setting(const char* name) {
    return qEnvironmentVariable(name);
}

class Hand final : public QObject {
  public:
    Hand() : words_(Setting("HAND_DOES").split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        QObject::connect(&timer_, &QTimer::timeout, this, [this] { Look(); });
        timer_.start(kLookMilliseconds);
    }

  private:
    // Each act goes by way of the event loop: while one runs, this goes on with what opens on top of it.
    void Look() {
        if (QWidget* const top = QApplication::activeModalWidget()) return Answer(top);
        QWidget* const form = MainForm();
        if (form == nullptr || busy_) return;
        if (!ready_) {
            QFile file(Setting("HAND_READY"));
            ready_ = file.open(QIODevice::WriteOnly);
            return;
        }
        if (!QFile::exists(Setting("HAND_GO"))) return;
        busy_ = true;
        QTimer::singleShot(0, form, [this, form] {
            if (words_.isEmpty())
                form->close();
            else
                Do(form, words_.takeFirst());
            busy_ = false;
        });
    }

    static QWidget* MainForm() {
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (widget->objectName() == QLatin1String("Principale") && widget->isVisible()) return widget;
        return nullptr;
    }

    static void Do(QWidget* form, const QString& word) {
        bool is_row = false;
        const int row = word.toInt(&is_row);
        if (is_row) {
            auto* const list = form->findChild<QListView*>(QStringLiteral("Combo_Livelli"));
            list->setCurrentIndex(list->model()->index(row, 0));
        } else if (auto* const command = form->findChild<QAction*>(word)) {
            command->trigger();
        } else if (auto* const button = form->findChild<QAbstractButton*>(word)) {
            button->click();
        }
    }

    // A window whose button is still at work isn't answered again.
    void Answer(QWidget* top) {
        if (answering_.contains(top)) return;
        answering_.append(top);
        QTimer::singleShot(0, top, [this, top] {
            if (auto* const box = qobject_cast<QMessageBox*>(top))
                AnswerBox(*box);
            else
                AnswerForm(top);
            answering_.removeOne(top);
        });
        QObject::connect(top, &QObject::destroyed, this, [this, top] { answering_.removeOne(top); });
    }

    static void AnswerBox(QMessageBox& box) {
        for (const QMessageBox::StandardButton wanted : {QMessageBox::Yes, QMessageBox::Ok})
            if (QAbstractButton* const button = box.button(wanted)) return button->click();
        box.close();
    }

    static bool IsProgress(const QString& name) {
        return name == QLatin1String("Dialog_Progress") || name == QLatin1String("Dialog_Wait") ||
               name == QLatin1String("Dialog_Zip");
    }

    static void AnswerForm(QWidget* form) {
        QString wanted = QStringLiteral("Pul_Ok");
        for (const QString& pair : Setting("HAND_FORMS").split(QLatin1Char(' ')))
            if (pair.startsWith(form->objectName() + QLatin1Char('=')))
                wanted = pair.section(QLatin1Char('='), 1);
        auto* const button = form->findChild<QAbstractButton*>(wanted);
        if (button != nullptr && button->isEnabled())
            button->click();
        else if (!IsProgress(form->objectName()))
            form->close();
    }

    QTimer timer_;
    QStringList words_;
    QList<QWidget*> answering_;
    bool ready_ = false;
    bool busy_ = false;
};

class HandPlugin final : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "hand.json")
  public:
    QObject* create(const QString& name, const QString&) override {
        return name == QLatin1String("hand") ? new Hand : nullptr;
    }
};

} // namespace

#include "hand.moc"
