// The places of the main form's controls, and their captions.
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QShortcut>
#include <QStackedLayout>
#include <QStatusBar>
#include <QVBoxLayout>

#include "ui/Principale.h"
#include "ui/Principale_messages.h"
#include "ui/form_kit.h"

namespace kelvash::ui {

namespace {

void OpenAt(QWidget* control, QMenu* menu) {
    control->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(control, &QWidget::customContextMenuRequested, menu,
                     [control, menu](const QPoint& point) { menu->popup(control->mapToGlobal(point)); });
}

} // namespace

void Principale::Set_Caption_Texts() {
    menu_.SetCaptions();
    SetCaptions(this, {{this, msg::kMainTitle},
                       {Frame_Livelli, msg::kMainFrameLevels},
                       ControlCaption::Hint(Text_Search, msg::kMainSearchHint),
                       {Pul_Search, msg::kMainSearch},
                       {Pul_Dopo, msg::kMainNext},
                       {Pul_Prima, msg::kMainPrevious},
                       {Pul_Play, msg::kMainPlay},
                       {Pul_MoreInfo, msg::kMainMoreInfo},
                       {Pul_ScreenShots, msg::kMainScreenShots},
                       {Pul_SaveGames, msg::kMainSaveGames},
                       {Frame_ScreenShots, msg::kMainFrameScreenShots},
                       {Pul_PrimoShot, msg::kMainFirstShot},
                       {Pul_PrimaScreenShot, msg::kMainPreviousShot},
                       {Pul_DopoScreenShot, msg::kMainNextShot},
                       {Pul_UltimoShot, msg::kMainLastShot},
                       {Frame_SaveGames, msg::kMainFrameSaveGames},
                       {Label_SaveGameTomb, msg::kMainSlots, List_SaveGameTomb},
                       {Label_SaveGameArchiviati, msg::kMainOldSaves, List_SaveGameArchiviati},
                       {Label_NoteSaveGame, msg::kMainSaveNote, Text_NoteSaveGame},
                       {Pul_RestoreSaveGame, msg::kMainRestoreSave},
                       {Pul_ArchiviaSavegames, msg::kMainArchiveSaves},
                       {Pul_DeleteSavegame, msg::kMainDeleteSave},
                       {Pul_ImportSavegame, msg::kMainImportSave},
                       {Pul_ExportSaveGame, msg::kMainExportSave},
                       {Pul_ChangeScreenshot, msg::kMainChangeShot},
                       ControlCaption::Spoken(Text_Search, msg::kMainSearch),
                       ControlCaption::Spoken(Combo_Livelli, msg::kMainFrameLevels),
                       ControlCaption::Spoken(Pul_PrimoShot, msg::kMainSpokenFirst),
                       ControlCaption::Spoken(Pul_PrimaScreenShot, msg::kMainSpokenPrevious),
                       ControlCaption::Spoken(Pul_DopoScreenShot, msg::kMainSpokenNext),
                       ControlCaption::Spoken(Pul_UltimoShot, msg::kMainSpokenLast)});
}

void Principale::Lay() {
    auto* const list = new QVBoxLayout(Frame_Livelli);
    list->addLayout(Row({Text_Search, Pul_Search}));
    list->addLayout(Row({Pul_Prima, Pul_Dopo}));
    list->addWidget(Combo_Livelli);
    Combo_Livelli->setModel(levels_);
    Combo_Livelli->setUniformItemSizes(true);
    Combo_Livelli->setIconSize(Thumbnails::kSize);
    Combo_Livelli->setAlternatingRowColors(true);
    Combo_Livelli->setTextElideMode(Qt::ElideRight);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* const enter = new QShortcut(QKeySequence(key), Combo_Livelli);
        enter->setContext(Qt::WidgetShortcut);
        connect(enter, &QShortcut::activated, Pul_Play, &QPushButton::click);
    }
    splitter_->addWidget(Frame_Livelli);
    splitter_->addWidget(LayDetails());
    splitter_->setStretchFactor(1, 1);
    splitter_->setChildrenCollapsible(false);
    splitter_->setSizes({fontMetrics().averageCharWidth() * 52, fontMetrics().averageCharWidth() * 90});
    auto* const centre = new QWidget(this);
    auto* const margin = new QVBoxLayout(centre);
    margin->addWidget(splitter_);
    setCentralWidget(centre);
    statusBar()->addWidget(Label_Info, 1);
    statusBar()->addPermanentWidget(ProgressBar1);
    ProgressBar1->setMaximumWidth(fontMetrics().averageCharWidth() * 30);
    resize(fontMetrics().averageCharWidth() * 170, fontMetrics().height() * 44);
    SetTabOrder();
    Combo_Livelli->setFocus();
}

QWidget* Principale::LayDetails() {
    auto* const details = new QWidget(this);
    auto* const column = new QVBoxLayout(details);
    column->setContentsMargins({});
    QFont title = Label_InfoLevel->font();
    title.setBold(true);
    Label_InfoLevel->setFont(title);
    Label_InfoLevel->setWordWrap(true);
    Label_InfoDir->setWordWrap(true);
    for (QLabel* label : {Label_InfoLevel, Label_InfoDir})
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const buttons = Row({Pul_Play, Pul_MoreInfo});
    buttons->addStretch();
    for (QPushButton* button : {Pul_ScreenShots, Pul_SaveGames}) {
        button->setCheckable(true);
        button->setAutoExclusive(true);
        buttons->addWidget(button);
    }
    QFont strong = Pul_Play->font();
    strong.setBold(true);
    Pul_Play->setFont(strong);
    Pul_Play->setMinimumSize(fontMetrics().averageCharWidth() * 18, fontMetrics().height() * 2);
    column->addWidget(Label_InfoLevel);
    column->addWidget(Label_InfoDir);
    column->addLayout(buttons);
    LayScreenShots();
    LaySaveGames();
    column->addWidget(Frame_ScreenShots, 1);
    column->addWidget(Frame_SaveGames, 1);
    return details;
}

void Principale::LayScreenShots() {
    auto* const images = new QHBoxLayout;
    images->addWidget(Image1, 1);
    images->addWidget(Image2, 1);
    auto* const pages = new QHBoxLayout;
    pages->addStretch();
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
    auto* const panel = new QGridLayout(Frame_SaveGames);
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
    panel->setRowStretch(3, 2);
    auto* const buttons = new QGridLayout;
    const std::array<QPushButton*, 6> six = {Pul_RestoreSaveGame, Pul_ArchiviaSavegames,
                                             Pul_DeleteSavegame,  Pul_ImportSavegame,
                                             Pul_ExportSaveGame,  Pul_ChangeScreenshot};
    for (std::size_t i = 0; i < six.size(); ++i)
        buttons->addWidget(six[i], static_cast<int>(i / 3), static_cast<int>(i % 3));
    panel->addLayout(buttons, 4, 0, 1, 2);
    Text_NoteSaveGame->setReadOnly(true);
    Text_NoteSaveGame->setTabChangesFocus(true);
    OpenAt(List_SaveGameTomb, Command(MenuEntry::mnu_SaveGameHid2)->menu());
    OpenAt(List_SaveGameArchiviati, Command(MenuEntry::mnu_SaveGameHid2)->menu());
    OpenAt(Image_SaveGame, Command(MenuEntry::mnu_SaveGameHid)->menu());
}

void Principale::SetTabOrder() {
    QWidget* before = Text_Search;
    for (QWidget* next : std::initializer_list<QWidget*>{Pul_Search,
                                                         Pul_Prima,
                                                         Pul_Dopo,
                                                         Combo_Livelli,
                                                         Pul_Play,
                                                         Pul_MoreInfo,
                                                         Pul_ScreenShots,
                                                         Pul_SaveGames,
                                                         Pul_PrimoShot,
                                                         Pul_PrimaScreenShot,
                                                         Pul_DopoScreenShot,
                                                         Pul_UltimoShot,
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
}

} // namespace kelvash::ui
