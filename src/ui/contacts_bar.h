// The author's e-mail addresses and web sites on a level's page, each a click away.
//
// As many as there is room for are buttons, the others entries in the menu of the last one. It opens nothing
// itself.
#pragma once

#include <QPushButton>
#include <QWidget>
#include <string>
#include <vector>

class QMenu;

namespace kelvash::ui {

class ContactsBar final : public QWidget {
    Q_OBJECT

  public:
    enum class Kind { Email, Site };
    explicit ContactsBar(QWidget* parent);

    // Without any the bar is hidden.
    void ShowContacts(const std::vector<std::string>& emails, const std::vector<std::string>& sites);
    // Puts its buttons behind a control for the tabulator key.
    void StandBehind(QWidget* control);

  Q_SIGNALS:
    // By its place in the list that was given.
    void EmailWanted(int item);
    void SiteWanted(int item);

  private:
    struct Contact {
        Kind kind;
        int item;
        QString text; // to the letter
    };
    static constexpr std::size_t kMostButtons = 6;

    void resizeEvent(QResizeEvent* event) override;
    void Fit();
    void FillMenu(std::size_t first);
    void Choose(std::size_t contact);

    std::vector<Contact> contacts_;
    std::vector<QPushButton*> buttons_;
    QPushButton* more_;
    QMenu* others_;
};

} // namespace kelvash::ui
