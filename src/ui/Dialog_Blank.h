// The cover: black from edge to edge, so that nothing of the desktop is seen beside the game.
#pragma once

#include <QWidget>

namespace kelvash::ui {

// Not modal, and without a caption. A click closes it; so may the system.
class Dialog_Blank final : public QWidget {
    Q_OBJECT

  public:
    Dialog_Blank();

    // Fills the screen that another window is on.
    void ImpostaValori(const QWidget& beside);

  Q_SIGNALS:
    // Whoever has closed it.
    void Closed();

  private:
    void mousePressEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
};

} // namespace kelvash::ui
