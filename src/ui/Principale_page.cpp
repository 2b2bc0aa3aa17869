// The right side of the main form: the selected level's page.
#include <QAction>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

#include "core/archive.h"
#include "core/level_list.h"
#include "intake/author_notes.h"
#include "trle/find_trle.h"
#include "ui/Principale.h"
#include "ui/form_kit.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/reflow.h"

namespace kelvash::ui {

namespace {

void OpenAt(QWidget* control, QMenu* menu) {
    control->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(control, &QWidget::customContextMenuRequested, menu,
                     [control, menu](const QPoint& point) { menu->popup(control->mapToGlobal(point)); });
}

} // namespace

QWidget* Principale::LayRightSide() {
    LayEmptyStates();
    LayPage();
    auto* const page = new QWidget;
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins({});
    column->addWidget(Page_Level);
    column->addWidget(Empty_Level);
    right_side_->SetPage(page);
    return right_side_;
}

void Principale::LayPage() {
    auto* const column = new QVBoxLayout(Page_Level);
    column->setContentsMargins({});
    SetType(Label_InfoLevel, Type::Title);
    SetExplaining(Label_InfoDir);
    column->addWidget(Image_Level, 2);
    column->addWidget(Empty_Trle, 2);
    column->addLayout(LayActions());
    column->addWidget(Label_InfoLevel);
    column->addWidget(Label_InfoDir);
    auto* const tabs = new QHBoxLayout;
    tabs->setSpacing(space::kTight);
    for (QPushButton* button : {Pul_ScreenShots, Pul_SaveGames}) {
        button->setCheckable(true);
        button->setAutoExclusive(true);
        tabs->addWidget(button);
    }
    tabs->addStretch();
    column->addLayout(tabs);
    LayScreenShots();
    LaySaveGames();
    column->addWidget(Frame_ScreenShots, 3);
    column->addWidget(Frame_SaveGames, 12); // lists need more room than pictures
    Frame_SaveGames->hide();                // one page at a time: see ShowPanel
}

// What the buttons do that help where there is nothing to show.
void Principale::LayEmptyStates() {
    const auto add = [this](EmptyState* state, QPushButton* button, MenuEntry command) {
        state->Add(button);
        connect(button, &QPushButton::clicked, Command(command), &QAction::trigger);
    };
    add(Empty_Levels, Pul_NewArchive, MenuEntry::mnu_New);
    add(Empty_Levels, Pul_LoadArchive, MenuEntry::mnu_Load);
    add(Empty_Levels, Pul_AddLevel, MenuEntry::mnu_AddLevel);
    add(Empty_Shots, Pul_AddShots, MenuEntry::mnu_AddScreenshot);
    Empty_Levels->Add(Pul_ShowAll);
    connect(Pul_ShowAll, &QPushButton::clicked, Text_Search, &QLineEdit::clear);
    Empty_SaveGames->Add(Pul_PlayNow);
    connect(Pul_PlayNow, &QPushButton::clicked, Pul_Play, &QPushButton::click);
    add(Empty_SaveGames, Pul_ImportFirst, MenuEntry::mnu_ImportSaveGameSingle);
    Empty_Trle->Add(Pul_ChooseTrle);
    connect(Pul_ChooseTrle, &QPushButton::clicked, this, [this] {
        door_.Try([] {
            if (trle::AskTrleFolder()) core::RefreshLevelList();
        });
    });
}

QLayout* Principale::LayActions() {
    SetMainAction(Pul_Play);
    Pul_Play->setFont(FontOf(Type::Title));
    Pul_Play->setMinimumSize(fontMetrics().averageCharWidth() * 22, fontMetrics().height() * 5 / 2);
    connect(Pul_Author, &QPushButton::clicked, Command(MenuEntry::mnu_ShowAutoreInfo), &QAction::trigger);
    SetExplaining(Label_Play);
    auto* const line = Row({Pul_Play, Pul_MoreInfo, Pul_Author});
    line->addStretch(1);
    auto* const lines = new QVBoxLayout;
    lines->setSpacing(space::kTight);
    lines->addLayout(line);
    lines->addWidget(Label_Play);
    lines->addWidget(Bar_Contacts);
    const auto notes = [] { return intake::BeginAuthorNotes(core::LevelIndex(core::SelectedLevel())); };
    connect(Bar_Contacts, &ContactsBar::EmailWanted, this,
            [this, notes](int item) { door_.Try([&] { intake::SendMail(notes(), item); }); });
    connect(Bar_Contacts, &ContactsBar::SiteWanted, this,
            [this, notes](int item) { door_.Try([&] { intake::GoSite(notes(), item); }); });
    return lines;
}

void Principale::LayScreenShots() {
    auto* const images = new QHBoxLayout;
    images->addWidget(Image1, 1);
    images->addWidget(Image2, 1);
    images->addWidget(Empty_Shots, 1);
    auto* const pages = new QHBoxLayout;
    pages->addStretch();
    Pul_PrimoShot->setIcon(IconOf(Glyph::First));
    Pul_PrimaScreenShot->setIcon(IconOf(Glyph::Previous));
    Pul_DopoScreenShot->setIcon(IconOf(Glyph::Next));
    Pul_UltimoShot->setIcon(IconOf(Glyph::Last));
    for (QPushButton* button : {Pul_PrimoShot, Pul_PrimaScreenShot, Pul_DopoScreenShot, Pul_UltimoShot})
        pages->addWidget(button);
    pages->addStretch();
    auto* const panel = new QVBoxLayout(Frame_ScreenShots);
    panel->addLayout(images, 1);
    panel->addLayout(pages);
    for (PictureView* image : {Image1, Image2})
        OpenAt(image, Command(MenuEntry::mnu_Edit)->menu());
}

void Principale::LaySaveGames() {
    auto* const either = new QVBoxLayout(Frame_SaveGames);
    either->addWidget(Page_SaveGames);
    either->addWidget(Empty_SaveGames);
    auto* const panel = new QGridLayout(Page_SaveGames);
    panel->setContentsMargins({});
    for (QLabel* label : {Label_SaveGameTomb, Label_SaveGameArchiviati}) {
        label->setWordWrap(true); // neither list gets wider than the other
        label->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    }
    panel->addWidget(Label_SaveGameTomb, 0, 0);
    panel->addWidget(Label_SaveGameArchiviati, 0, 1);
    panel->addWidget(List_SaveGameTomb, 1, 0);
    panel->addWidget(List_SaveGameArchiviati, 1, 1);
    panel->addWidget(Label_NoteSaveGame, 2, 0);
    panel->addWidget(Text_NoteSaveGame, 3, 0);
    panel->addWidget(Image_SaveGame, 2, 1, 2, 1);
    panel->setColumnStretch(0, 1);
    panel->setColumnStretch(1, 1);
    panel->setRowStretch(1, 3);
    panel->setRowStretch(3, 1);
    panel->addLayout(new Reflow({Pul_RestoreSaveGame, Pul_ArchiviaSavegames, Pul_DeleteSavegame,
                                 Pul_ImportSavegame, Pul_ExportSaveGame, Pul_ChangeScreenshot},
                                {3, 2}),
                     4, 0, 1, 2);
    Text_NoteSaveGame->setMinimumHeight(fontMetrics().height() * 3);
    Image_SaveGame->setMinimumSize(1, fontMetrics().height() * 5); // as wide as the list above it
    Text_NoteSaveGame->setReadOnly(true);
    Text_NoteSaveGame->setTabChangesFocus(true);
    OpenAt(List_SaveGameTomb, Command(MenuEntry::mnu_SaveGameHid2)->menu());
    OpenAt(List_SaveGameArchiviati, Command(MenuEntry::mnu_SaveGameHid2)->menu());
    OpenAt(Image_SaveGame, Command(MenuEntry::mnu_SaveGameHid)->menu());
}

} // namespace kelvash::ui
