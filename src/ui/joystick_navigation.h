// The joystick drives the main form while no game runs.
#pragma once

#include <QObject>
#include <cstdint>

class QAbstractButton;
class QWidget;

namespace kelvash::ui {

class Principale;

class JoystickNavigation final : public QObject {
    Q_OBJECT

  public:
    // Looks with each tick of Timer_Joystick.
    explicit JoystickNavigation(Principale& window);

  private:
    void Tick();
    bool HeedButtons(std::uint32_t buttons, QWidget* zoom);
    void HeedFirstButton(QWidget* zoom);
    void HeedAxes(int x, int y);
    void MoveSavegame(bool forward);

    Principale& window_;
};

} // namespace kelvash::ui
