// The page that leads through the first start: its three steps, which are done, and what is asked now.
//
// It asks nothing itself. The questions are windows of their own above it, for which it leaves room below the
// steps.
#pragma once

#include <QLabel>
#include <QWidget>
#include <array>

#include "program/start_up.h"
#include "ui/form_support.h"

namespace kelvash::ui {

enum class StepState { Done, Now, ToCome };

// One step: its number or the sign that it is done, its name, and what it is for.
class StepCard final : public QWidget {
    Q_OBJECT

  public:
    StepCard(int number, MessageId title, MessageId text, QWidget* parent);
    void SetState(StepState state);
    StepState State() const { return state_; }

  private:
    QRect Sign() const;
    void paintEvent(QPaintEvent* event) override;

    int number_;
    StepState state_ = StepState::ToCome;
    QLabel* const title_ = new QLabel(this);
    QLabel* const state_label_ = new QLabel(this);
    QLabel* const text_ = new QLabel(this);
};

class FirstStart final : public QWidget {
    Q_OBJECT

  public:
    explicit FirstStart(QWidget* parent);
    ~FirstStart() override;

    // The step that begins; those before it are done.
    void Begin(program::FirstStep step);
    StepState StateOf(program::FirstStep step) const;
    // Where the questions have their place.
    QRect Stage() const;

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;

    QLabel* const Label_Title = Make<QLabel>(this, "Label_Title");
    QLabel* const Label_Intro = Make<QLabel>(this, "Label_Intro");
    std::array<StepCard*, 3> cards_;
};

} // namespace kelvash::ui
