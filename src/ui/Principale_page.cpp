// The right side of the main form: the selected level's page.
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

#include "ui/Principale.h"
#include "ui/form_kit.h"
#include "ui/icons.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

void OpenAt(QWidget* control, QMenu* menu) {
    control->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(control, &QWidget::customContextMenuRequested, menu,
                     [control, menu](const QPoint& point) { menu->popup(control->mapToGlobal(point)); });
}

} // namespace

QWidget* Principale::LayPage() {
    auto* const page = new QWidget(this);
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins({});
    SetType(Label_InfoLevel, Type::Title);
    Label_InfoLevel->setWordWrap(true);
    SetExplaining(Label_InfoDir);
    Label_InfoDir->setWordWrap(true);
    for (QLabel* label : {Label_InfoLevel, Label_InfoDir})
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(Image_Level, 2);
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
    Pul_ScreenShots->setIcon(IconOf(Glyph::Screenshots));
    Pul_SaveGames->setIcon(IconOf(Glyph::Savegames));
    column->addLayout(tabs);
    LayScreenShots();
    LaySaveGames();
    column->addWidget(Frame_ScreenShots, 3);
    column->addWidget(Frame_SaveGames, 3);
    Frame_SaveGames->hide(); // one page at a time: see ShowPanel
    return page;
}

QLayout* Principale::LayActions() {
    SetMainAction(Pul_Play);
    Pul_Play->setFont(FontOf(Type::Title));
    Pul_Play->setIcon(IconOf(Glyph::Play, MainActionText()));
    Pul_Play->setMinimumSize(fontMetrics().averageCharWidth() * 26, fontMetrics().height() * 5 / 2);
    Pul_MoreInfo->setIcon(IconOf(Glyph::Info));
    Pul_Author->setIcon(IconOf(Glyph::Author));
    connect(Pul_Author, &QPushButton::clicked, Command(MenuEntry::mnu_ShowAutoreInfo), &QAction::trigger);
    auto* const line = Row({Pul_Play, Pul_MoreInfo, Pul_Author});
    line->addSpacing(space::kClose);
    SetExplaining(Label_Play);
    Label_Play->setWordWrap(true);
    line->addWidget(Label_Play, 1);
    return line;
}

void Principale::LayScreenShots() {
    auto* const images = new QHBoxLayout;
    images->addWidget(Image1, 1);
    images->addWidget(Image2, 1);
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

} // namespace kelvash::ui
