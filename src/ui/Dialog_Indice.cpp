#include "ui/Dialog_Indice.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "foundation/user.h"
#include "ui/Dialog_Indice_messages.h"
#include "ui/form_kit.h"

namespace kelvash::ui {

Dialog_Indice::Dialog_Indice(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Indice"));
    Set_Caption_Texts();
    Lay();
    connect(Opt_Main, &QRadioButton::toggled, this, &Dialog_Indice::ShowTopics);
    connect(Text_Find, &QLineEdit::textChanged, this,
            [this](const QString& text) { Pul_Find->setEnabled(!text.isEmpty()); });
    connect(Pul_Find, &QPushButton::clicked, this, &Dialog_Indice::Find);
    connect(List_Indice, &QListWidget::itemDoubleClicked, this, &Dialog_Indice::Choose);
    connect(Pul_Ok, &QPushButton::clicked, this, &Dialog_Indice::Choose);
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_Indice::reject);
    Text_Find->installEventFilter(this);
    ShowTopics();
}

void Dialog_Indice::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kIndiceCaption},
                       {Opt_Main, msg::kIndiceMain},
                       {Opt_Sub, msg::kIndiceSub},
                       {Pul_Find, msg::kIndiceFind, Glyph::Search},
                       {Pul_Ok, msg::kIndiceOk},
                       {Pul_Cancel, msg::kIndiceCancel},
                       ControlCaption::Spoken(Text_Find, msg::kIndiceSought),
                       ControlCaption::Spoken(List_Indice, msg::kIndiceTopics)});
}

void Dialog_Indice::Lay() {
    auto* const kinds = new QHBoxLayout;
    kinds->addWidget(Opt_Main);
    kinds->addWidget(Opt_Sub);
    kinds->addStretch();
    auto* const search = new QHBoxLayout;
    search->addWidget(Text_Find, 1);
    search->addWidget(Pul_Find);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(kinds);
    layout->addLayout(search);
    layout->addWidget(List_Indice, 1);
    layout->addLayout(FootRow(this, HelpMark::ReadingHelp, {Label_Items}, {Pul_Ok, Pul_Cancel}));
    List_Indice->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // a longer title ends in "..."
    List_Indice->setSpacing(1);
    Opt_Main->setChecked(true);
    Pul_Find->setEnabled(false);
    Text_Find->setFocus();
    setSizeGripEnabled(true);
    resize(fontMetrics().averageCharWidth() * 78, fontMetrics().lineSpacing() * 30);
}

void Dialog_Indice::ImpostaValori(const std::string& text) {
    main_topics_ = HelpTopics(text, TopicKind::Main);
    sub_topics_ = HelpTopics(text, TopicKind::Sub);
    Opt_Main->setChecked(true);
    ShowTopics();
}

// Enter searches as long as the search field is in use, and chooses otherwise.
bool Dialog_Indice::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) Pul_Find->setDefault(true);
    if (event->type() == QEvent::FocusOut) Pul_Ok->setDefault(true);
    return QDialog::eventFilter(watched, event);
}

const std::vector<HelpTopic>& Dialog_Indice::Topics() const {
    return Opt_Main->isChecked() ? main_topics_ : sub_topics_;
}

void Dialog_Indice::ShowTopics() {
    List_Indice->clear();
    for (const HelpTopic& topic : Topics()) { // one line each, whatever the title holds
        auto* const item = new QListWidgetItem(FromUtf8(topic.title).simplified(), List_Indice);
        item->setToolTip(ToolTipText(item->text()));
    }
    Label_Items->setText(QString::number(Topics().size()) + Caption(msg::kIndiceItems));
}

int Dialog_Indice::SelectedRow() const {
    const QList<QListWidgetItem*> selected = List_Indice->selectedItems();
    return selected.isEmpty() ? -1 : List_Indice->row(selected.front());
}

void Dialog_Indice::Find() {
    const int count = List_Indice->count();
    const int start = SelectedRow() + 1;
    for (int i = 0; i < count; ++i) {
        const int row = (start + i) % count;
        if (!List_Indice->item(row)->text().contains(Text_Find->text(), Qt::CaseInsensitive)) continue;
        List_Indice->setCurrentRow(row);
        List_Indice->scrollToItem(List_Indice->item(row));
        return;
    }
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kIndiceNotFound));
}

void Dialog_Indice::Choose() {
    const int row = SelectedRow();
    if (row < 0) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kIndiceNoSelection));
        return;
    }
    Position = Topics()[static_cast<std::size_t>(row)].position;
    accept();
}

} // namespace kelvash::ui
