// Every form at several scales and with longer captions: nothing is cut, nothing lies on something else, and
// the tabulator key doesn't jump back. The scale is the process's own (QT_SCALE_FACTOR, see
// tests/CMakeLists.txt).
#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QScrollArea>
#include <QSizeGrip>
#include <QSplitter>
#include <QStyleOptionComboBox>
#include <QStyleOptionGroupBox>
#include <QToolButton>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "core/level_draft.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "program/message_tables.h"
#include "ui/field_note.h"
#include "ui/forms_home.h"
#include "ui/look.h"
#include "ui/path_label.h"

namespace kelvash::test {
namespace {

using testing::IsEmpty;

namespace space = ui::space;

constexpr QSize kLargest{1280, 720}; // of a form at 100 %

// What levels and folders may be called.
const std::string kLongName = "The Wonderful Adventures Below the Waterworks of West Wycombe, Part MMXXVI";
const std::string kLongWord(79, 'W');
const std::string kLongPath = "C:\\" + kLongWord + "\\" + kLongWord + "\\" + kLongWord;

class Fitting : public FormsHome {
  protected:
    using Faults = std::vector<std::string>;

    static std::string NameOf(const QWidget& form, const QWidget* control) {
        const QString name = control->objectName();
        return (form.objectName() + QLatin1Char('.') +
                (name.isEmpty() ? QLatin1String(control->metaObject()->className()) : name))
            .toStdString();
    }
    static std::string Sizes(const QSize& is, const QSize& wants) {
        return " is " + std::to_string(is.width()) + "x" + std::to_string(is.height()) + " and wants " +
               std::to_string(wants.width()) + "x" + std::to_string(wants.height());
    }
    // What a control shows in one line, beside the room that it has for it.
    static bool IsCut(const QWidget* widget, int room, const QString& line, QSize& wants) {
        wants =
            QSize(widget->width() - room + widget->fontMetrics().horizontalAdvance(line), widget->height());
        return wants.width() > widget->width();
    }
    // The widest item; a control whose tool tip has all of the current one may leave out some of it.
    static bool IsComboCut(const QComboBox* combo, QSize& wants) {
        QStyleOptionComboBox option;
        option.initFrom(combo);
        const QRect field =
            combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
        QString widest = combo->placeholderText();
        bool told = combo->toolTip() == combo->currentText();
        for (int i = 0; i < combo->count(); ++i) {
            const QString item = combo->itemText(i);
            told = told && combo->itemData(i, Qt::ToolTipRole).toString() == item;
            if (combo->fontMetrics().horizontalAdvance(item) > combo->fontMetrics().horizontalAdvance(widest))
                widest = item;
        }
        const int icon = combo->itemIcon(0).isNull() ? 0 : combo->iconSize().width() + space::kTight;
        return !told && IsCut(combo, field.width() - icon, widest, wants);
    }
    static bool IsTitleCut(const QGroupBox* group, QSize& wants) {
        QStyleOptionGroupBox option;
        option.initFrom(group);
        option.text = group->title();
        option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
        const QRect room =
            group->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, group);
        return !group->title().isEmpty() &&
               IsCut(group, std::min(room.width(), group->width() - room.left()), group->title(), wants);
    }
    // A list without a scroll bar below it.
    static bool AreRowsCut(const QListWidget* list, QSize& wants) {
        if (list->horizontalScrollBarPolicy() != Qt::ScrollBarAlwaysOff) return false;
        for (int row = 0; row < list->count(); ++row)
            if (list->item(row)->toolTip().isEmpty() &&
                IsCut(list, list->viewport()->width(), list->item(row)->text(), wants))
                return true;
        return false;
    }
    // Between the icons of a field.
    static int RoomOf(const QLineEdit* field) {
        int room = field->contentsRect().width() - 2 * space::kTight;
        for (const QWidget* icon : field->findChildren<QToolButton*>())
            if (icon->isVisible()) room -= icon->width();
        return room;
    }
    // Those that show words.
    static bool IsCut(const QWidget* widget, QSize& wants) {
        if (const auto* const combo = qobject_cast<const QComboBox*>(widget)) return IsComboCut(combo, wants);
        if (const auto* const group = qobject_cast<const QGroupBox*>(widget)) return IsTitleCut(group, wants);
        if (const auto* const list = qobject_cast<const QListWidget*>(widget)) return AreRowsCut(list, wants);
        if (const auto* const field = qobject_cast<const QLineEdit*>(widget))
            return IsCut(field, RoomOf(field), field->placeholderText(), wants);
        // They leave out what doesn't fit, and tell all of it: see TellsWhatItLeavesOut.
        if (qobject_cast<const ui::ElidedLabel*>(widget) != nullptr) return false;
        if (const auto* const label = qobject_cast<const QLabel*>(widget)) {
            if (label->text().isEmpty() || !label->toolTip().isEmpty()) return false;
            wants = label->sizeHint();
            if (label->wordWrap()) // not narrower than its longest word
                wants = {std::max(label->width(), label->minimumSizeHint().width()),
                         label->heightForWidth(label->width())};
            return label->width() < wants.width() || label->height() < wants.height();
        }
        if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) {
            if (button->text().isEmpty()) return false;
            wants = button->minimumSizeHint();
            return button->width() < wants.width() || button->height() < wants.height();
        }
        return false;
    }
    static void LookForCuts(const QWidget& form, Faults& faults) {
        for (const QWidget* widget : form.findChildren<QWidget*>()) {
            QSize wants;
            if (widget->window() == &form && widget->isVisible() && IsCut(widget, wants))
                faults.push_back(NameOf(form, widget) + Sizes(widget->size(), wants));
        }
    }
    static void LookForOverlaps(const QWidget& form, Faults& faults) {
        QList<const QWidget*> parents{&form};
        for (const QWidget* widget : form.findChildren<QWidget*>())
            parents << widget;
        for (const QWidget* parent : parents) {
            if (parent->window() != &form || parent->layout() == nullptr) continue;
            QList<QWidget*> shown;
            for (QWidget* child : parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
                if (child->isVisible() && !child->isWindow() && qobject_cast<QSizeGrip*>(child) == nullptr)
                    shown << child;
            for (qsizetype i = 0; i < shown.size(); ++i)
                for (qsizetype j = i + 1; j < shown.size(); ++j)
                    if (shown[i]->geometry().intersects(shown[j]->geometry()))
                        faults.push_back(NameOf(form, shown[i]) + " lies on " + NameOf(form, shown[j]));
        }
    }
    static void LookAtTabOrder(const QWidget& form, Faults& faults) {
        const QList<QWidget*> order = InTabOrder(form);
        for (qsizetype i = 1; i < order.size(); ++i) {
            const auto [before, now] = PlacesOf(form, order[i - 1], order[i]);
            if (now.bottom() < before.top() && now.left() < before.right())
                faults.push_back("from " + NameOf(form, order[i - 1]) + " back to " + NameOf(form, order[i]));
        }
    }
    static void LookAtSize(const QWidget& form, Faults& faults) {
        const QSize least = form.minimumSizeHint();
        if (least.width() > kLargest.width() || least.height() > kLargest.height())
            faults.push_back(NameOf(form, &form) + Sizes(kLargest, least));
    }
    // For all that is opened from now on.
    void TakeLongData() {
        core::LevelRecord& level = *core::archive.Table.Edit(1);
        level.Name = kLongName;
        level.Note = kLongWord;
        level.Author = kLongWord;
        level.Emails = kLongWord + "@" + kLongWord + '\0' + "ann@a.org";
        level.Sites = "https://" + kLongWord + "/" + kLongWord;
        level.AuthorNote = kLongPath;
        level.MoreInfoFile = kLongWord + ".txt";
        const std::string files = core::PlaceOf(1).Folder + "\\FILES\\";
        MakeFile(NativePath(files + kLongWord + ".txt"), "text");
        MakeFile(NativePath(files + "data\\" + kLongWord + ".tr4"), "level");
        std::filesystem::create_directories(NativePath(kLongPath));
        core::profile.LastArchive = kLongPath + "\\" + kLongWord + ".kva";
        core::profile.DownloadFolder = kLongPath;
        core::RefreshLevelList();
        core::SelectLevel(1);
        form.AggiornaDatiLivello(false);
        QApplication::processEvents();
    }
    static QRect PlaceOf(const QWidget& form, const QWidget* widget) {
        return {widget->mapTo(&form, QPoint()), widget->size()};
    }
    // Of two controls one of which scrolls with others, that of them all: the keyboard brings it into sight.
    static std::pair<QRect, QRect> PlacesOf(const QWidget& form, const QWidget* one, const QWidget* other) {
        const auto* const area = form.findChild<QScrollArea*>(QStringLiteral("Scroll"));
        const bool apart = area != nullptr && area->isAncestorOf(one) != area->isAncestorOf(other);
        const auto place = [&](const QWidget* control) {
            return PlaceOf(form, apart && area->isAncestorOf(control) ? area : control);
        };
        return {place(one), place(other)};
    }
    // From the topmost control on, once around.
    static QList<QWidget*> InTabOrder(const QWidget& form) {
        QList<QWidget*> order;
        for (QWidget* at = form.nextInFocusChain(); at != &form; at = at->nextInFocusChain())
            if (at->window() == &form && at->isVisible() && (at->focusPolicy() & Qt::TabFocus) != 0 &&
                at->focusProxy() == nullptr)
                order << at;
        return order;
    }
    static void Show(QWidget& form) {
        form.show();
        QApplication::processEvents();
    }
    Faults FaultsOfAllForms() {
        Faults faults;
        ForEach([&](QWidget& open) {
            if (&open != &form) Show(open);
            LookForCuts(open, faults);
            LookForOverlaps(open, faults);
            LookAtTabOrder(open, faults);
            ++forms_;
        });
        return faults;
    }
    int forms_ = 0;
};

TEST_F(Fitting, NothingIsCutOrLiesOnSomethingElse) {
    EXPECT_THAT(FaultsOfAllForms(), IsEmpty());
    EXPECT_EQ(forms_, 27);
}

TEST_F(Fitting, TheSavegamesPageFitsToo) {
    Faults faults;
    form.Pul_SaveGames->click();
    QApplication::processEvents();
    LookForCuts(form, faults);
    LookForOverlaps(form, faults);
    EXPECT_THAT(faults, IsEmpty());
}

TEST_F(Fitting, TheAuthorsAddressesFitToo) {
    Faults faults;
    std::string emails;
    for (const char* name : {"a", "somebody.with.a.long.name", "c", "d", "e", "f", "g"})
        emails += std::string(name) + "@example.org" + '\0';
    core::archive.Table.Edit(1)->Emails = emails;
    core::archive.Table.Edit(1)->Sites = "http://levels.example.org/" + std::string(80, 'x');
    core::SelectLevel(1);
    QTest::qWait(50);
    EXPECT_TRUE(form.Bar_Contacts->isVisible());
    LookForCuts(form, faults);
    LookForOverlaps(form, faults);
    LookAtTabOrder(form, faults);
    EXPECT_THAT(faults, IsEmpty());
}

// As long as a translation may make them.
TEST_F(Fitting, NotesBelowFieldsFitToo) {
    Faults faults;
    int notes = 0;
    ForEach([&](QWidget& open) {
        if (open.findChild<ui::FieldNote*>() == nullptr) return;
        Show(open);
        for (auto* const note : open.findChildren<ui::FieldNote*>()) {
            note->Say(
                QStringLiteral("Here stands what is wrong with the field above, in so many words that "
                               "one line of the form is not enough for them"));
            ++notes;
        }
        QApplication::processEvents();
        LookForCuts(open, faults);
        LookForOverlaps(open, faults);
    });
    EXPECT_THAT(faults, IsEmpty());
    EXPECT_EQ(notes, 7);
}

TEST_F(Fitting, ThePagesWithNothingToShowFitToo) {
    Faults faults;
    core::SelectLevel(2);
    const auto look = [&] {
        QTest::qWait(50); // a text asks for its room, the page for its own, and so on up
        LookForCuts(form, faults);
        LookForOverlaps(form, faults);
        LookAtTabOrder(form, faults);
    };
    look();
    form.Pul_SaveGames->click();
    std::filesystem::rename(drive / "trle", drive / "moved");
    form.AggiornaDatiLivello(false);
    look();
    form.Text_Search->setText(QStringLiteral("zzz"));
    look();
    core::archive = core::ArchiveState();
    core::RefreshLevelList();
    look();
    EXPECT_THAT(faults, IsEmpty());
}

TEST_F(Fitting, NoFormIsLargerThanASmallScreen) {
    Faults faults;
    ForEach([&](QWidget& open) { LookAtSize(open, faults); });
    EXPECT_THAT(faults, IsEmpty());
}

// Names and paths as long as they may be, in all forms.
TEST_F(Fitting, LongDataFits) {
    TakeLongData();
    EXPECT_THAT(FaultsOfAllForms(), IsEmpty());
    Faults faults;
    for (const bool saves : {false, true}) {
        (saves ? form.Pul_SaveGames : form.Pul_ScreenShots)->click();
        QTest::qWait(50);
        LookForCuts(form, faults);
        LookForOverlaps(form, faults);
    }
    EXPECT_THAT(faults, IsEmpty());
}

TEST_F(Fitting, LongDataMakesNoFormLarger) {
    TakeLongData();
    Faults faults;
    ForEach([&](QWidget& open) { LookAtSize(open, faults); });
    EXPECT_THAT(faults, IsEmpty());
}

TEST_F(Fitting, ALineThatLeavesOutSomethingTellsAllOfIt) {
    TakeLongData();
    form.Say(ui::FromUtf8(kLongPath));
    for (QLabel* label :
         {static_cast<QLabel*>(form.Label_InfoLevel), static_cast<QLabel*>(form.Label_Info)}) {
        QHelpEvent hover(QEvent::ToolTip, QPoint(1, 1), label->mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(label, &hover);
        EXPECT_EQ(QToolTip::text().toStdString(), label->text().toStdString());
        EXPECT_GT(label->text().size(), 70);
        QToolTip::hideText();
    }
    EXPECT_NE(form.Image_Level->toolTip().toStdString().find(kLongName), std::string::npos);
}

TEST_F(Fitting, LongPathsInFormsThatAskFit) {
    TakeLongData();
    Faults faults;
    const auto look = [&](QWidget& window) {
        LookAtSize(window, faults); // shown, it would scroll
        Show(window);
        QApplication::processEvents();
        LookForCuts(window, faults);
        LookForOverlaps(window, faults);
    };
    ui::Dialog_TrovaTrle asked(nullptr);
    asked.ImpostaValori({"", kLongPath});
    look(asked);
    EXPECT_EQ(asked.Label_Path->toolTip().toStdString(), kLongPath);
    ui::Dialog_GetDir folder(nullptr);
    folder.ImpostaValori(kLongPath, kLongPath);
    look(folder);
    ui::Dialog_InsertCd disc(nullptr);
    disc.ImpostaValori({kLongPath, "Insert CD " + kLongPath, "E:"});
    look(disc);
    robot.Will("MessageBox", [&faults](QWidget* box) {
        LookForCuts(*box, faults);
        LookForOverlaps(*box, faults);
        Press(box, "OK");
    });
    forms.Message(MessageStyle::Exclamation,
                  MessageText("No such folder: " + kLongPath + "\r\n" + kLongPath));
    EXPECT_THAT(faults, IsEmpty());
}

TEST_F(Fitting, LongPathsInAJobsWindowsFit) {
    Faults faults;
    const auto look = [&](QWidget& window, QLabel* label) {
        label->setText(ui::WrappedText("Copying " + kLongPath));
        LookAtSize(window, faults);
        Show(window);
        QApplication::processEvents();
        LookForCuts(window, faults);
    };
    ui::Dialog_Progress progress(nullptr);
    look(progress, progress.Label_Info);
    ui::Dialog_Zip zip(nullptr);
    look(zip, zip.Label_Info);
    ui::Dialog_Wait wait(nullptr);
    look(wait, wait.Label_Mex);
    EXPECT_THAT(faults, IsEmpty());
}

TEST_F(Fitting, AFormThatIsTooLargeForItsScreenScrolls) {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 2);
    QApplication::setFont(large);
    {
        ui::Dialog_Settings settings(nullptr);
        settings.ImpostaValori();
        Show(settings);
        const QSize room = settings.screen()->availableSize();
        EXPECT_LE(settings.height(), room.height());
        EXPECT_LE(settings.width(), room.width());
        auto* const area = settings.findChild<QScrollArea*>(QStringLiteral("Scroll"));
        ASSERT_NE(area, nullptr);
        for (const QPushButton* button : {settings.Pul_Help, settings.Pul_Ok, settings.Pul_Cancel}) {
            EXPECT_TRUE(settings.rect().contains(PlaceOf(settings, button))) << "the row of buttons stays";
            EXPECT_FALSE(area->isAncestorOf(button));
        }
        const auto bottom = [&] { return PlaceOf(settings, settings.Check_NoAutoCompila).bottom(); };
        EXPECT_GT(bottom(), settings.Pul_Ok->y());
        area->ensureWidgetVisible(settings.Check_NoAutoCompila);
        EXPECT_LT(bottom(), settings.Pul_Ok->y());
        Faults faults;
        LookAtTabOrder(settings, faults);
        EXPECT_THAT(faults, IsEmpty());
    }
    QApplication::setFont(usual);
}

TEST_F(Fitting, ARowOfButtonsThatIsTooWideForTheScreenScrollsToo) {
    const QFont usual = QApplication::font();
    QFont huge = usual;
    huge.setPointSizeF(usual.pointSizeF() * 8);
    QApplication::setFont(huge);
    {
        ui::Dialog_Settings settings(nullptr);
        Show(settings);
        EXPECT_LE(settings.width(), settings.screen()->availableSize().width());
        const auto* const area = settings.findChild<QScrollArea*>(QStringLiteral("Scroll"));
        ASSERT_NE(area, nullptr);
        EXPECT_TRUE(area->isAncestorOf(settings.Pul_Ok));
    }
    QApplication::setFont(usual);
}

TEST_F(Fitting, AFormThatHasRoomDoesNotScroll) {
    ui::Dialog_GetDir folders(nullptr);
    Show(folders);
    EXPECT_EQ(folders.findChild<QScrollArea*>(QStringLiteral("Scroll")), nullptr);
}

// A translation is some 40 % longer than English.
class LongCaptions : public Fitting {
  protected:
    LongCaptions() {
        std::string table;
        for (const program::TableEntry& entry : program::MessageTable()) {
            if (entry.fragment || entry.text.find('|') != std::string_view::npos) continue;
            table.append(std::to_string(entry.id)).append("\t").append(entry.text);
            table.append(entry.text.size() * 2 / 5, 'n').append("\n");
        }
        Load(table);
        form.Set_Caption_Texts();
        QTest::qWait(50); // they ask for their room, and so on up
    }
    ~LongCaptions() override { Load(program::ExportedMessages()); }
    LongCaptions(const LongCaptions&) = delete;
    LongCaptions& operator=(const LongCaptions&) = delete;

    void Load(const std::string& table) {
        MakeFile(home / "long.txt", table);
        EXPECT_TRUE(program::LoadMessageTable("C:\\Kelvash\\long.txt").Taken);
    }
};

TEST_F(LongCaptions, FitAsWell) {
    EXPECT_THAT(Plain(form.Pul_Play->text()), "Playn");
    EXPECT_THAT(FaultsOfAllForms(), IsEmpty());
}

TEST_F(LongCaptions, FitWithLongDataToo) {
    TakeLongData();
    EXPECT_THAT(FaultsOfAllForms(), IsEmpty());
}

TEST_F(LongCaptions, MakeNoFormLargerThanASmallScreen) {
    TakeLongData();
    Faults faults;
    ForEach([&](QWidget& open) { LookAtSize(open, faults); });
    EXPECT_THAT(faults, IsEmpty());
}

} // namespace
} // namespace kelvash::test
