#include "ui/Dialog_Autore.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/Dialog_Autore_messages.h"
#include "ui/form_kit.h"
#include "ui/text_faults.h"

namespace kelvash::ui {

namespace {

// Shows a list; the item that is selected stays so, or the last one if it is gone.
void Fill(QComboBox* combo, const std::vector<std::string>& items) {
    const int selected = combo->currentIndex();
    combo->clear();
    for (const std::string& item : items)
        combo->addItem(ShownLine(item));
    combo->setCurrentIndex(std::clamp(selected, items.empty() ? -1 : 0, combo->count() - 1));
}

} // namespace

Dialog_Autore::Dialog_Autore(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Autore"));
    for (QComboBox* combo : {Combo_Email, Combo_Siti})
        TakeLongItems(combo);
    Set_Caption_Texts();
    Lay();
    const auto add_email = [](intake::AuthorNotes& notes, std::int32_t) { return AddEmail(notes); };
    const auto add_site = [](intake::AuthorNotes& notes, std::int32_t) { return AddSite(notes); };
    ConnectEdit(Pul_NewEmail, Combo_Email, add_email);
    ConnectEdit(Pul_ChangeEmail, Combo_Email, &intake::ChangeEmail);
    ConnectEdit(Pul_DelEmail, Combo_Email, &intake::DeleteEmail);
    ConnectEdit(Pul_New_Sito, Combo_Siti, add_site);
    ConnectEdit(Pul_ModSito, Combo_Siti, &intake::ChangeSite);
    ConnectEdit(Pul_DelSito, Combo_Siti, &intake::DeleteSite);
    connect(Pul_SendMail, &QPushButton::clicked, this,
            [this] { SendMail(notes_, Combo_Email->currentIndex()); });
    connect(Pul_GoSito, &QPushButton::clicked, this, [this] { GoSite(notes_, Combo_Siti->currentIndex()); });
    connect(Pul_Ok, &QPushButton::clicked, this, &Dialog_Autore::Accept);
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_Autore::reject);
}

// A new item is selected: it is the last one then.
void Dialog_Autore::ConnectEdit(QPushButton* button, QComboBox* combo, Edit edit) {
    connect(button, &QPushButton::clicked, this, [this, combo, edit] {
        const int count = combo->count();
        if (!edit(notes_, combo->currentIndex())) return;
        ShowLists();
        if (combo->count() > count) combo->setCurrentIndex(combo->count() - 1);
    });
}

void Dialog_Autore::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kAutoreCaption},
                       {Label_NomeAutore, msg::kAutoreName, Text_NomeAutore},
                       {Label_Email, msg::kAutoreEmails, Combo_Email},
                       {Pul_NewEmail, msg::kAutoreNewEmail, Glyph::Add},
                       {Pul_ChangeEmail, msg::kAutoreChangeEmail, Glyph::Note},
                       {Pul_DelEmail, msg::kAutoreDelEmail, Glyph::Delete},
                       {Pul_SendMail, msg::kAutoreSendMail, Glyph::Email},
                       {Label_Siti, msg::kAutoreSites, Combo_Siti},
                       {Pul_New_Sito, msg::kAutoreNewSite, Glyph::Add},
                       {Pul_ModSito, msg::kAutoreModSite, Glyph::Note},
                       {Pul_DelSito, msg::kAutoreDelSite, Glyph::Delete},
                       {Pul_GoSito, msg::kAutoreGoSite, Glyph::Address},
                       {Label_NoteAutore, msg::kAutoreNote, Text_NoteAutore},
                       {Pul_Help, msg::kAutoreHelp},
                       {Pul_Ok, msg::kAutoreOk},
                       {Pul_Cancel, msg::kAutoreCancel},
                       ControlCaption::WhatGoes(Pul_DelEmail, msg::kAutoreGoesEmail),
                       ControlCaption::WhatGoes(Pul_DelSito, msg::kAutoreGoesSite),
                       ControlCaption::Spoken(Pul_NewEmail, msg::kAutoreSpokenNewEmail),
                       ControlCaption::Spoken(Pul_ChangeEmail, msg::kAutoreSpokenChangeEmail),
                       ControlCaption::Spoken(Pul_DelEmail, msg::kAutoreSpokenDelEmail),
                       ControlCaption::Spoken(Pul_New_Sito, msg::kAutoreSpokenNewSite),
                       ControlCaption::Spoken(Pul_ModSito, msg::kAutoreSpokenModSite),
                       ControlCaption::Spoken(Pul_DelSito, msg::kAutoreSpokenDelSite)});
}

void Dialog_Autore::Lay() {
    auto* const grid = new QGridLayout;
    grid->addWidget(Label_NomeAutore, 0, 0);
    grid->addWidget(Text_NomeAutore, 0, 1);
    grid->addWidget(Note_Fields, 1, 1);
    Note_Fields->Watch(Text_NomeAutore,
                       [](const QString& typed) { return FaultOfText(typed, intake::kLongestAuthor); });
    const auto list = [grid](int row, QLabel* label, QComboBox* combo,
                             std::initializer_list<QPushButton*> buttons) {
        auto* const line = new QHBoxLayout;
        for (QPushButton* button : buttons)
            line->addWidget(button);
        line->addStretch();
        grid->addWidget(label, row, 0);
        grid->addWidget(combo, row, 1);
        grid->addLayout(line, row + 1, 1);
    };
    list(2, Label_Email, Combo_Email, {Pul_NewEmail, Pul_ChangeEmail, Pul_DelEmail, Pul_SendMail});
    list(4, Label_Siti, Combo_Siti, {Pul_New_Sito, Pul_ModSito, Pul_DelSito, Pul_GoSito});
    grid->addWidget(Label_NoteAutore, 6, 0, Qt::AlignTop);
    grid->addWidget(Text_NoteAutore, 6, 1);
    grid->setColumnStretch(1, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::Author, Pul_Ok, Pul_Cancel}));
    Text_NoteAutore->setTabChangesFocus(true);
    Text_NoteAutore->setFixedHeight(fontMetrics().lineSpacing() * 5);
    layout->addStrut(fontMetrics().averageCharWidth() * 76);
}

void Dialog_Autore::ImpostaValori(std::int32_t level_index) {
    notes_ = intake::BeginAuthorNotes(level_index);
    Text_NomeAutore->setText(ShownLine(notes_.Name));
    Text_NoteAutore->setPlainText(ShownText(notes_.Note));
    ShowLists();
}

void Dialog_Autore::ShowLists() {
    Fill(Combo_Email, notes_.Emails);
    Fill(Combo_Siti, notes_.Sites);
}

void Dialog_Autore::Accept() {
    notes_.Name = ToUtf8(Text_NomeAutore->text());
    // The lines of a record end as those of its file's other readers.
    notes_.Note = ToUtf8(Text_NoteAutore->toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
    if (intake::StoreAuthorNotes(notes_)) accept();
}

} // namespace kelvash::ui
