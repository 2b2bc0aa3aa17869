#include "ui/Dialog_InputTesto.h"

#include <QHBoxLayout>
#include <QTextCursor>
#include <QVBoxLayout>

#include "ui/Dialog_InputTesto_messages.h"
#include "ui/form_kit.h"

namespace kelvash::ui {

Dialog_InputTesto::Dialog_InputTesto(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_InputTesto"));
    Set_Caption_Texts();
    Lay();
    connect(Pul_Ok, &QPushButton::clicked, this, &Dialog_InputTesto::Accept);
    connect(Pul_Annulla, &QPushButton::clicked, this, &Dialog_InputTesto::reject);
    connect(Pul_Svuota, &QPushButton::clicked, this, [this] {
        // An edit like any other, so that it can be undone.
        QTextCursor all(Text1->document());
        all.select(QTextCursor::Document);
        all.removeSelectedText();
        Text1->setFocus();
    });
}

void Dialog_InputTesto::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kInputCaption},
                       {Pul_Svuota, msg::kInputClear, Glyph::Empty},
                       {Pul_Ok, msg::kInputOk},
                       {Pul_Annulla, msg::kInputCancel},
                       ControlCaption::WhatGoes(Pul_Svuota, msg::kInputGoes),
                       ControlCaption::Spoken(Text1, msg::kInputText)});
}

void Dialog_InputTesto::Lay() {
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Text1, 1);
    layout->addLayout(FootRow(this, HelpMark::SmallWindows, {Pul_Svuota}, {Pul_Ok, Pul_Annulla}));
    Text1->setTabChangesFocus(true);
    Text1->setFocus();
    const int letter = fontMetrics().averageCharWidth();
    Text1->setMinimumSize(letter * 40, fontMetrics().lineSpacing() * 4);
    resize(letter * 70, fontMetrics().lineSpacing() * 16);
}

void Dialog_InputTesto::ImpostaValori(const std::string& caption, const std::string& text) {
    if (!caption.empty()) setWindowTitle(ShownLine(caption));
    Text1->setPlainText(FromUtf8(text));
    Text1->moveCursor(QTextCursor::End);
}

void Dialog_InputTesto::Accept() {
    Testo = ToUtf8(Text1->toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
    accept();
}

} // namespace kelvash::ui
