// Every form at several scales and with longer captions: nothing is cut, nothing lies on something else, and
// the tabulator key doesn't jump back. The scale is the process's own (QT_SCALE_FACTOR, see
// tests/CMakeLists.txt).
#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QSizeGrip>
#include <QSplitter>

#include "program/message_tables.h"
#include "ui/field_note.h"
#include "ui/forms_home.h"
#include "ui/look.h"

namespace kelvash::test {
namespace {

using testing::IsEmpty;

constexpr QSize kLargest{1280, 720}; // of a form at 100 %

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
    // Those that show words.
    static bool IsCut(const QWidget* widget, QSize& wants) {
        if (const auto* const label = qobject_cast<const QLabel*>(widget)) {
            if (label->text().isEmpty() || !label->toolTip().isEmpty()) return false;
            wants = label->wordWrap() ? QSize(label->width(), label->heightForWidth(label->width()))
                                      : label->sizeHint();
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
            const QRect before = PlaceOf(form, order[i - 1]), now = PlaceOf(form, order[i]);
            if (now.bottom() < before.top() && now.left() < before.right())
                faults.push_back("from " + NameOf(form, order[i - 1]) + " back to " + NameOf(form, order[i]));
        }
    }
    static QRect PlaceOf(const QWidget& form, const QWidget* widget) {
        return {widget->mapTo(&form, QPoint()), widget->size()};
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
    EXPECT_EQ(forms_, 22);
}

TEST_F(Fitting, TheSavegamesPageFitsToo) {
    Faults faults;
    form.Pul_SaveGames->click();
    QApplication::processEvents();
    LookForCuts(form, faults);
    LookForOverlaps(form, faults);
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
    EXPECT_EQ(notes, 6);
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
    ForEach([&](QWidget& open) {
        const QSize least = open.minimumSizeHint();
        if (least.width() > kLargest.width() || least.height() > kLargest.height())
            faults.push_back(NameOf(open, &open) + Sizes(kLargest, least));
    });
    EXPECT_THAT(faults, IsEmpty());
}

TEST_F(Fitting, AFormThatIsTooLargeForItsScreenScrolls) {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 3);
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
        EXPECT_FALSE(area->viewport()->rect().intersects(PlaceOf(settings, settings.Pul_Ok)));
        area->ensureWidgetVisible(settings.Pul_Ok);
        EXPECT_TRUE(area->viewport()->rect().contains(PlaceOf(settings, settings.Pul_Ok)));
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
        QApplication::processEvents();
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

} // namespace
} // namespace kelvash::test
