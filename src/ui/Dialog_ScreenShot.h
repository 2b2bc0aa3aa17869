// A screenshot at its full size, or as large as it is wanted.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <string>

#include "ui/form_support.h"
#include "ui/zoom_view.h"

namespace kelvash::ui {

class Dialog_ScreenShot final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_ScreenShot(QWidget* parent);
    void Set_Caption_Texts();
    // False, after a message, for a picture that can't be read.
    [[nodiscard]] bool ImpostaValori(const std::string& path);

    QScrollArea* const Scroll1 = Make<QScrollArea>(this, "Scroll1");
    ZoomView* const Picture1 = Make<ZoomView>(this, "Picture1");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_ZoomOut = Make<QPushButton>(this, "Pul_ZoomOut");
    QLabel* const Label_Zoom = Make<QLabel>(this, "Label_Zoom");
    QPushButton* const Pul_ZoomIn = Make<QPushButton>(this, "Pul_ZoomIn");
    QPushButton* const Pul_FullSize = Make<QPushButton>(this, "Pul_FullSize");
    QPushButton* const Pul_Fit = Make<QPushButton>(this, "Pul_Fit");
    QPushButton* const Pul_Close = Make<QPushButton>(this, "Pul_Close");

  private:
    void Lay();
    void ConnectControls();
    void SetZoom(double zoom);
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace kelvash::ui
