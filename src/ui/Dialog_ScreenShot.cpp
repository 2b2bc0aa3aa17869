#include "ui/Dialog_ScreenShot.h"

#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QtMath>
#include <optional>

#include "companion/shot_files.h"
#include "foundation/user.h"
#include "ui/Dialog_ScreenShot_messages.h"
#include "ui/form_kit.h"
#include "ui/icons.h"
#include "ui/keys.h"
#include "ui/look.h"
#include "ui/picture_reading.h"
#include "ui/screen_keeper.h"

namespace kelvash::ui {

namespace {

constexpr double kStep = 1.25;

} // namespace

Dialog_ScreenShot::Dialog_ScreenShot(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_ScreenShot"));
    Set_Caption_Texts();
    Lay();
    ConnectControls();
}

void Dialog_ScreenShot::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kZoomCaption},
                       {Pul_Help, msg::kZoomHelp, Glyph::Help},
                       {Pul_ZoomOut, msg::kZoomOut, Glyph::ZoomOut},
                       {Pul_ZoomIn, msg::kZoomIn, Glyph::Zoom},
                       {Pul_FullSize, msg::kZoomFull, Glyph::FullSize},
                       {Pul_Fit, msg::kZoomFit, Glyph::Fit},
                       {Pul_Close, msg::kZoomClose, Glyph::GiveUp},
                       ControlCaption::Spoken(Scroll1, msg::kZoomArea)});
}

void Dialog_ScreenShot::Lay() {
    auto* const layout = new QVBoxLayout(this);
    Scroll1->setWidget(Picture1);
    Scroll1->setAlignment(Qt::AlignCenter);
    Scroll1->setFocus();
    layout->addWidget(Scroll1, 1);
    SetExplaining(Label_Zoom);
    Label_Zoom->setAlignment(Qt::AlignCenter);
    layout->addLayout(
        FootRow({Pul_Help}, {Pul_ZoomOut, Label_Zoom, Pul_ZoomIn, Pul_FullSize, Pul_Fit, Pul_Close}));
    Pul_Close->setDefault(true);
    ConnectHelp(Pul_Help, this, HelpMark::Screenshots);
    ConnectHelpKey(this, HelpMark::Screenshots);
    KeepOnScreen(this);
    SetZoom(1);
    Label_Zoom->setMinimumWidth(
        Label_Zoom->fontMetrics().horizontalAdvance(Caption(msg::kZoomPercent, {"0000"})));
}

void Dialog_ScreenShot::ConnectControls() {
    const auto in = [this] { SetZoom(Picture1->Zoom() * kStep); };
    const auto out = [this] { SetZoom(Picture1->Zoom() / kStep); };
    const auto full = [this] { SetZoom(1); };
    const auto fit = [this] { SetZoom(Picture1->ZoomFor(Scroll1->maximumViewportSize())); };
    connect(Pul_ZoomIn, &QPushButton::clicked, this, in);
    connect(Pul_ZoomOut, &QPushButton::clicked, this, out);
    connect(Pul_FullSize, &QPushButton::clicked, this, full);
    connect(Pul_Fit, &QPushButton::clicked, this, fit);
    connect(Pul_Close, &QPushButton::clicked, this, &Dialog_ScreenShot::accept);
    AddKeys(this, KeyWorks::InTheForm, {Qt::Key_Plus, Qt::Key_Equal}, Caption(msg::kZoomKeyIn), in);
    AddKeys(this, KeyWorks::InTheForm, {Qt::Key_Minus}, Caption(msg::kZoomKeyOut), out);
    AddKeys(this, KeyWorks::InTheForm, {Qt::Key_1}, Caption(msg::kZoomKeyFull), full);
    AddKeys(this, KeyWorks::InTheForm, {Qt::Key_0}, Caption(msg::kZoomKeyFit), fit);
    Scroll1->viewport()->installEventFilter(this);
    Picture1->installEventFilter(this);
}

bool Dialog_ScreenShot::ImpostaValori(const std::string& path) {
    // Not the toolkit's reading: that fills up with grey what a cut file lacks.
    const std::optional<swap::Picture> read = companion::ReadShot(path);
    if (!read) {
        TellCritical(LoadMessage(msg::kZoomUnreadable) + path);
        return false;
    }
    const QImage picture = ImageOf(*read);
    setWindowTitle(ShownLine(LoadMessage(msg::kZoomCaption) + path));
    Picture1->ShowPicture(picture);
    Scroll1->setAccessibleName(ShownLine(path));
    SetZoom(1);
    const QSize rest = layout()->totalSizeHint() - Scroll1->sizeHint();
    const int frame = 2 * Scroll1->frameWidth();
    resize((Picture1->size() + QSize(frame + 2 * space::kApart, rest.height() + frame))
               .expandedTo(layout()->totalMinimumSize()));
    return true;
}

void Dialog_ScreenShot::SetZoom(double zoom) {
    Picture1->SetZoom(zoom);
    Label_Zoom->setText(Caption(msg::kZoomPercent, {std::to_string(qRound(Picture1->Zoom() * 100))}));
    Pul_ZoomIn->setEnabled(Picture1->Zoom() < ZoomView::kLargest);
    Pul_ZoomOut->setEnabled(Picture1->Zoom() > ZoomView::kSmallest);
}

// The wheel with Ctrl, as in every viewer; a double click closes what one has opened.
bool Dialog_ScreenShot::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonDblClick) {
        accept();
        return true;
    }
    if (event->type() != QEvent::Wheel) return QDialog::eventFilter(watched, event);
    const auto* const wheel = static_cast<const QWheelEvent*>(event);
    if ((wheel->modifiers() & Qt::ControlModifier) == 0) return false;
    SetZoom(Picture1->Zoom() * (wheel->angleDelta().y() > 0 ? kStep : 1 / kStep));
    return true;
}

} // namespace kelvash::ui
