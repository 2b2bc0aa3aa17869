// The sheet of all keys.
#pragma once

#include <QDialog>
#include <QPushButton>
#include <QScrollArea>
#include <vector>

#include "ui/form_support.h"
#include "ui/keys.h"

class QBoxLayout;
class QGridLayout;

namespace kelvash::ui {

class Dialog_Keys final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Keys(QWidget* parent);
    void Set_Caption_Texts();
    // The keys of a window; those that hold everywhere and those of the help stand behind them.
    void ImpostaValori(const QMainWindow& window);

    QScrollArea* const Scroll_Keys = Make<QScrollArea>(this, "Scroll_Keys");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");

  private:
    static void Add(QGridLayout* column, const KeyGroup& group);

    void TakeSize();

    QWidget* sheet_;
    QBoxLayout* columns_;
    QGridLayout* left_;
    QGridLayout* right_;
};

} // namespace kelvash::ui
