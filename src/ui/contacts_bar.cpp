#include "ui/contacts_bar.h"

#include <QAction>
#include <QHBoxLayout>
#include <QMenu>
#include <algorithm>

#include "ui/Principale_messages.h"
#include "ui/form_support.h"
#include "ui/icons.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

constexpr int kMostLetters = 30; // of an address on a button, in average characters

Glyph GlyphOf(ContactsBar::Kind kind) {
    return kind == ContactsBar::Kind::Email ? Glyph::Email : Glyph::Address;
}

// As a caption: a "&" marks no letter.
QString ToTheLetter(QString text) {
    return text.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

ContactsBar::ContactsBar(QWidget* parent) : QWidget(parent), others_(new QMenu(this)) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(space::kTight);
    for (std::size_t i = 0; i < kMostButtons; ++i) {
        const std::string name = "Pul_Contact" + std::to_string(i + 1);
        auto* const button = Make<QPushButton>(this, name.c_str());
        SetType(button, Type::Caption);
        SetIcon(button, GlyphOf(Kind::Email));
        button->hide();
        connect(button, &QPushButton::clicked, this, [this, i] { Choose(i); });
        row->addWidget(button);
        buttons_.push_back(button);
    }
    more_ = Make<QPushButton>(this, "Pul_MoreContacts");
    SetType(more_, Type::Caption);
    SetIcon(more_, Glyph::More);
    more_->setMenu(others_);
    more_->hide();
    row->addWidget(more_);
    row->addStretch();
    // However long an address, it leaves the room of the window as it is.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Maximum);
    hide();
}

void ContactsBar::ShowContacts(const std::vector<std::string>& emails,
                               const std::vector<std::string>& sites) {
    contacts_.clear();
    for (std::size_t i = 0; i < emails.size(); ++i)
        contacts_.push_back({Kind::Email, static_cast<int>(i), ShownLine(emails[i])});
    for (std::size_t i = 0; i < sites.size(); ++i)
        contacts_.push_back({Kind::Site, static_cast<int>(i), ShownLine(sites[i])});
    const QFontMetrics metrics(FontOf(Type::Caption));
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        QPushButton& button = *buttons_[i];
        // A screen reader tells those apart too that stand for none.
        const bool stands = i < contacts_.size();
        button.setAccessibleName(stands ? contacts_[i].text
                                        : Caption(msg::kMainContact, {std::to_string(i + 1)}));
        if (!stands) continue;
        button.setText(ToTheLetter(metrics.elidedText(contacts_[i].text, Qt::ElideRight,
                                                      metrics.averageCharWidth() * kMostLetters)));
        SetIcon(&button, GlyphOf(contacts_[i].kind));
        button.setToolTip(ToolTipText(contacts_[i].text));
    }
    Fit();
    setVisible(!contacts_.empty());
}

void ContactsBar::StandBehind(QWidget* control) {
    QWidget* before = control;
    for (QPushButton* button : buttons_) {
        setTabOrder(before, button);
        before = button;
    }
    setTabOrder(before, more_);
}

void ContactsBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Fit();
}

// All of them, or as many as leave room for the button with the others.
void ContactsBar::Fit() {
    const int gap = layout()->spacing();
    std::vector<int> ends; // of the row after each button
    for (std::size_t i = 0; i < std::min(contacts_.size(), buttons_.size()); ++i)
        ends.push_back((ends.empty() ? 0 : ends.back() + gap) + buttons_[i]->sizeHint().width());
    std::size_t shown = ends.size();
    more_->setText(Caption(msg::kMainMoreContacts, {std::to_string(contacts_.size())}));
    const int more = gap + more_->sizeHint().width();
    const bool all = shown == contacts_.size() && (shown == 0 || ends.back() <= width());
    while (!all && shown > 0 && ends[shown - 1] + more > width())
        --shown;
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        buttons_[i]->setVisible(i < shown);
    more_->setVisible(!all);
    FillMenu(shown);
}

void ContactsBar::FillMenu(std::size_t first) {
    others_->clear();
    if (first < contacts_.size())
        more_->setText(Caption(msg::kMainMoreContacts, {std::to_string(contacts_.size() - first)}));
    for (std::size_t i = first; i < contacts_.size(); ++i) {
        const Contact& contact = contacts_[i];
        QAction* const entry = others_->addAction(IconOf(GlyphOf(contact.kind)), ToTheLetter(contact.text));
        connect(entry, &QAction::triggered, this, [this, i] { Choose(i); });
    }
}

void ContactsBar::Choose(std::size_t contact) {
    if (contact >= contacts_.size()) return;
    const Contact& chosen = contacts_[contact];
    if (chosen.kind == Kind::Email)
        Q_EMIT EmailWanted(chosen.item);
    else
        Q_EMIT SiteWanted(chosen.item);
}

} // namespace kelvash::ui
