// The picture that stands while the program starts.
#pragma once

#include <QLabel>
#include <QWidget>

#include "ui/form_support.h"

namespace kelvash::ui {

// Shows no text of its own but the version on its picture.
class Dialog_Splash final : public QWidget {
    Q_OBJECT

  public:
    explicit Dialog_Splash(const QPixmap& picture);

    QLabel* const Image_Splash = Make<QLabel>(this, "Image_Splash");
    QLabel* const Label_Version = Make<QLabel>(this, "Label_Version");
};

// The splash picture of the application's folder; null if there is none that can be read.
QPixmap SplashPicture();

} // namespace kelvash::ui
