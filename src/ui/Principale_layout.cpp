// The main form's captions, its library and its tools.
#include <QHBoxLayout>
#include <QScreen>
#include <QScrollArea>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include "ui/Principale.h"
#include "ui/Principale_messages.h"
#include "ui/form_kit.h"
#include "ui/icons.h"
#include "ui/keys.h"
#include "ui/look.h"
#include "ui/reflow.h"

namespace kelvash::ui {

namespace {

// In average characters and lines of the form's font.
constexpr int kLibraryWidth = 80; // two tiles
constexpr int kPageWidth = 122;
constexpr int kHeight = 54;

} // namespace

void Principale::Set_Caption_Texts() {
    menu_.SetCaptions();
    SetCaptions(this, {{this, msg::kMainTitle},
                       {Frame_Livelli, msg::kMainFrameLevels},
                       ControlCaption::Hint(Text_Search, msg::kMainSearchHint),
                       {Pul_Search, msg::kMainSearch, Glyph::Search},
                       {Pul_Dopo, msg::kMainNext, Glyph::Next},
                       {Pul_Prima, msg::kMainPrevious, Glyph::Previous},
                       {Pul_Play, msg::kMainPlay, Glyph::Play},
                       {Pul_MoreInfo, msg::kMainMoreInfo, Glyph::Info},
                       {Pul_Author, msg::kMainAuthor, Glyph::Author},
                       {Pul_List, msg::kMainAsList, Glyph::List},
                       {Pul_Tiles, msg::kMainAsTiles, Glyph::Tiles},
                       {Pul_NewArchive, msg::kMainNewArchive, Glyph::NewArchive},
                       {Pul_LoadArchive, msg::kMainLoadArchive, Glyph::OpenArchive},
                       {Pul_AddLevel, msg::kMainToolAdd, Glyph::Add},
                       {Pul_ShowAll, msg::kMainShowAll, Glyph::List},
                       {Pul_ChooseTrle, msg::kMainChooseTrle, Glyph::Folder},
                       {Pul_AddShots, msg::kMainAddShots, Glyph::Add},
                       {Pul_PlayNow, msg::kMainPlayNow, Glyph::Play},
                       {Pul_ImportFirst, msg::kMainImportFirst, Glyph::Import},
                       {Pul_ScreenShots, msg::kMainScreenShots, Glyph::Screenshots},
                       {Pul_SaveGames, msg::kMainSaveGames, Glyph::Savegames},
                       {Frame_ScreenShots, msg::kMainFrameScreenShots},
                       {Pul_PrimoShot, msg::kMainFirstShot},
                       {Pul_PrimaScreenShot, msg::kMainPreviousShot},
                       {Pul_DopoScreenShot, msg::kMainNextShot},
                       {Pul_UltimoShot, msg::kMainLastShot},
                       {Frame_SaveGames, msg::kMainFrameSaveGames},
                       {Label_SaveGameTomb, msg::kMainSlots, List_SaveGameTomb},
                       {Label_SaveGameArchiviati, msg::kMainOldSaves, List_SaveGameArchiviati},
                       {Label_NoteSaveGame, msg::kMainSaveNote, Text_NoteSaveGame},
                       {Pul_RestoreSaveGame, msg::kMainRestoreSave, Glyph::Restore},
                       {Pul_ArchiviaSavegames, msg::kMainArchiveSaves, Glyph::Archive},
                       {Pul_DeleteSavegame, msg::kMainDeleteSave, Glyph::Delete},
                       {Pul_ImportSavegame, msg::kMainImportSave, Glyph::Import},
                       {Pul_ExportSaveGame, msg::kMainExportSave, Glyph::Export},
                       {Pul_ChangeScreenshot, msg::kMainChangeShot, Glyph::NoPicture},
                       ControlCaption::WhatGoes(Pul_DeleteSavegame, msg::kMainGoesSave),
                       ControlCaption::Spoken(Text_Search, msg::kMainSearch),
                       ControlCaption::Spoken(Combo_Livelli, msg::kMainFrameLevels),
                       ControlCaption::Spoken(Pul_PrimoShot, msg::kMainSpokenFirst),
                       ControlCaption::Spoken(Pul_PrimaScreenShot, msg::kMainSpokenPrevious),
                       ControlCaption::Spoken(Pul_DopoScreenShot, msg::kMainSpokenNext),
                       ControlCaption::Spoken(Pul_UltimoShot, msg::kMainSpokenLast)});
    // Its hint stands between two icons.
    Text_Search->setMinimumWidth(fontMetrics().horizontalAdvance(Text_Search->placeholderText()) +
                                 2 * (fontMetrics().height() + space::kApart));
}

void Principale::Lay() {
    LayTools();
    LayLibrary();
    splitter_->addWidget(Frame_Livelli);
    splitter_->addWidget(LayRightSide());
    splitter_->setStretchFactor(1, 1);
    splitter_->setChildrenCollapsible(false);
    const int letter = fontMetrics().averageCharWidth();
    splitter_->setSizes({letter * kLibraryWidth, letter * kPageWidth});
    auto* const centre = Make<QWidget>(this, "Centre");
    auto* const margin = new QVBoxLayout(centre);
    margin->addWidget(splitter_);
    // The page scrolls by itself; this is for a screen on which not even both sides' least has room.
    auto* const area = Make<QScrollArea>(this, "Scroll");
    area->setWidget(centre);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    setCentralWidget(area);
    statusBar()->addWidget(Label_Info, 1);
    Label_Info->setContentsMargins(space::kNear - space::kTight / 2, 0, 0,
                                   0); // begins where everything above begins
    statusBar()->addPermanentWidget(ProgressBar1);
    ProgressBar1->setMaximumWidth(letter * 30);
    const QSize wish(letter * (kLibraryWidth + kPageWidth), fontMetrics().height() * kHeight);
    resize(wish.boundedTo(screen()->availableSize() * 19 / 20)); // its frame has to fit too
    SetTabOrder();
    Combo_Livelli->setFocus();
}

void Principale::LayTools() {
    auto* const bar = addToolBar(Caption(msg::kMainToolBar));
    bar->setObjectName(QStringLiteral("Tools"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setMovable(false);
    const auto add = [this, bar](Glyph glyph, MessageId text, QAction* command) {
        command->setIconText(Caption(text));
        command->setIcon(IconOf(glyph));
        bar->addAction(command);
        addAction(command); // its key works while the bar is hidden
    };
    play_ = new QAction(this);
    play_->setText(Caption(msg::kMainPlay));
    play_->setShortcuts({Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter});
    connect(play_, &QAction::triggered, Pul_Play, &QPushButton::click);
    add(Glyph::Play, msg::kMainPlay, play_);
    more_ = new QAction(IconOf(Glyph::Info), Caption(msg::kMainMoreInfo), this);
    connect(more_, &QAction::triggered, Pul_MoreInfo, &QPushButton::click);
    bar->addSeparator();
    add(Glyph::Add, msg::kMainToolAdd, Command(MenuEntry::mnu_AddLevel));
    add(Glyph::Restore, msg::kMainToolRestore, Command(MenuEntry::mnu_SetOriginale));
    add(Glyph::Properties, msg::kMainToolProperties, Command(MenuEntry::mnu_Property));
    bar->addSeparator();
    auto* const search = new QAction(Caption(msg::kMainToolSearch), this);
    search->setShortcut(QKeySequence(QStringLiteral("Ctrl+L")));
    connect(search, &QAction::triggered, this, [this] {
        Text_Search->setFocus(Qt::ShortcutFocusReason);
        Text_Search->selectAll();
    });
    add(Glyph::Search, msg::kMainToolSearch, search);
}

QLayout* Principale::LaySearch() {
    Text_Search->addAction(IconOf(Glyph::Search), QLineEdit::LeadingPosition);
    clear_ = Text_Search->addAction(IconOf(Glyph::Clear), QLineEdit::TrailingPosition);
    clear_->setVisible(false);
    connect(clear_, &QAction::triggered, Text_Search, &QLineEdit::clear);
    AddKeys(Text_Search, KeyWorks::InTheControl, {Qt::Key_Escape}, Caption(msg::kMainEmptySearch),
            [this] { Text_Search->clear(); });
    for (QPushButton* button : {Pul_List, Pul_Tiles}) {
        button->setCheckable(true);
        button->setAutoExclusive(true);
    }
    auto* const beside = Make<QWidget>(this, "Beside_Search");
    auto* const buttons = Row({Pul_Search, Pul_Prima, Pul_Dopo});
    beside->setLayout(buttons);
    buttons->setContentsMargins({});
    buttons->addSpacing(space::kClose);
    buttons->addWidget(Pul_List);
    buttons->addWidget(Pul_Tiles);
    buttons->setSpacing(space::kTight);
    auto* const search = new Reflow({Text_Search, beside}, {2, 1});
    search->setSpacing(space::kTight);
    return search;
}

void Principale::LayLibrary() {
    auto* const column = new QVBoxLayout(Frame_Livelli);
    column->addLayout(LaySearch());
    column->addWidget(Combo_Livelli, 2);
    column->addWidget(Empty_Levels, 3);
    Combo_Livelli->setModel(levels_);
    Combo_Livelli->setItemDelegate(delegate_);
    Combo_Livelli->setUniformItemSizes(true);
    Combo_Livelli->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    Combo_Livelli->setMouseTracking(true);
    Combo_Livelli->setSpacing(1);
    // The list's own keys mean its current row: a level whose row is filtered out is worked on from its page.
    AddKeys(Combo_Livelli, KeyWorks::InTheControl, {Qt::Key_Return, Qt::Key_Enter},
            Caption(msg::kMainEnterPlays), [this] {
                if (Combo_Livelli->currentIndex().isValid()) Pul_Play->click();
            });
    // Elsewhere this key means something else that is deleted.
    QAction* const remove = Command(MenuEntry::mnu_RemoveLevel);
    AddKeys(Combo_Livelli, KeyWorks::InTheControl, {Qt::Key_Delete}, WithoutLetter(remove->text()),
            [this, remove] {
                if (Combo_Livelli->currentIndex().isValid()) remove->trigger();
            });
    SetView(LibraryView::List);
}

void Principale::SetView(LibraryView view) {
    delegate_->SetView(view);
    const bool tiles = view == LibraryView::Tiles;
    (tiles ? Pul_Tiles : Pul_List)->setChecked(true);
    levels_->SetPictureSize(LevelDelegate::PictureSize(view) * devicePixelRatioF());
    Combo_Livelli->setViewMode(tiles ? QListView::IconMode : QListView::ListMode);
    Combo_Livelli->setMovement(QListView::Static);
    Combo_Livelli->setResizeMode(QListView::Adjust);
    Combo_Livelli->setSpacing(tiles ? space::kTight : 1);
    Combo_Livelli->setUniformItemSizes(true);
    Combo_Livelli->scrollTo(Combo_Livelli->currentIndex());
}

void Principale::SetTabOrder() {
    QWidget* before = Text_Search;
    for (QWidget* next : std::initializer_list<QWidget*>{Pul_Search,
                                                         Pul_Prima,
                                                         Pul_Dopo,
                                                         Pul_List,
                                                         Pul_Tiles,
                                                         Combo_Livelli,
                                                         Pul_ShowAll,
                                                         Pul_NewArchive,
                                                         Pul_LoadArchive,
                                                         Pul_AddLevel,
                                                         Pul_ChooseTrle,
                                                         Pul_Play,
                                                         Pul_MoreInfo,
                                                         Pul_Author,
                                                         Pul_ScreenShots,
                                                         Pul_SaveGames,
                                                         Image1,
                                                         Image2,
                                                         Pul_AddShots,
                                                         Pul_PrimoShot,
                                                         Pul_PrimaScreenShot,
                                                         Pul_DopoScreenShot,
                                                         Pul_UltimoShot,
                                                         Pul_PlayNow,
                                                         Pul_ImportFirst,
                                                         List_SaveGameTomb,
                                                         List_SaveGameArchiviati,
                                                         Text_NoteSaveGame,
                                                         Pul_RestoreSaveGame,
                                                         Pul_ArchiviaSavegames,
                                                         Pul_DeleteSavegame,
                                                         Pul_ImportSavegame,
                                                         Pul_ExportSaveGame,
                                                         Pul_ChangeScreenshot}) {
        setTabOrder(before, next);
        before = next;
    }
    Bar_Contacts->StandBehind(Pul_Author);
}

} // namespace kelvash::ui
