#include "ui/look.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QStyleFactory>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "ui/icons.h"
#include "ui/look_style.h"

namespace kelvash::ui {

namespace {

constexpr double kReadable = 4.5; // contrast of a text

double Linear(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double LuminanceOf(const QColor& colour) {
    return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
           0.0722 * Linear(colour.blueF());
}

// The colour, moved towards black or white until it can be read on all grounds.
QColor ReadableOn(const QColor& wish, std::initializer_list<QColor> grounds) {
    const double light =
        std::accumulate(grounds.begin(), grounds.end(), 0.0,
                        [](double sum, const QColor& ground) { return sum + LuminanceOf(ground); });
    const QColor end = light > 0.18 * static_cast<double>(grounds.size()) ? Qt::black : Qt::white;
    constexpr int kSteps = 20;
    for (int step = 0; step < kSteps; ++step) {
        QColor colour = Mixed(end, wish, static_cast<double>(step) / kSteps);
        if (std::all_of(grounds.begin(), grounds.end(),
                        [&](const QColor& ground) { return ContrastOf(colour, ground) >= kReadable; }))
            return colour;
    }
    return end;
}

struct Scheme {
    QRgb surface, raised, raised_row, text, muted, button, edge, accent, on_accent;
};
constexpr Scheme kLight{0xf3f4f6, 0xffffff, 0xf8f9fa, 0x1c2126, 0x59636e,
                        0xffffff, 0xc3c8cf, 0x1f6f8b, 0xffffff};
constexpr Scheme kDark{0x1b1e22, 0x25292e, 0x292d33, 0xe7e9ec, 0xa4adb7,
                       0x30353b, 0x474d55, 0x63bcd8, 0x08222c};
constexpr QRgb kShade = 0x0b1217;
constexpr QRgb kBanner = 0x2f6073;
constexpr QRgb kDanger = 0xc2321f;
constexpr QRgb kSuccess = 0x1d7a43;

QPalette ColoursOfMainAction(const QPalette& program) {
    QPalette own;
    own.setColor(QPalette::Button, program.color(QPalette::Highlight));
    own.setColor(QPalette::ButtonText, program.color(QPalette::HighlightedText));
    return own;
}

QPalette ColoursOfDestructive(const QPalette& program) {
    QPalette own;
    own.setColor(QPalette::ButtonText, ColourOf(Role::Danger, program));
    return own;
}

class PaletteFollower final : public QObject {
  public:
    PaletteFollower(QWidget* control, ColoursOf colours)
        : QObject(control), control_(control), colours_(colours) {
        control->installEventFilter(this);
        Take();
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange && !taking_) Take();
        return false;
    }

  private:
    void Take() {
        taking_ = true; // its own palette is a change too
        control_->setPalette(colours_(QApplication::palette()));
        taking_ = false;
    }

    QWidget* control_;
    ColoursOf colours_;
    bool taking_ = false;
};

} // namespace

QFont FontOf(Type type) {
    QFont font = QApplication::font();
    constexpr double kCaption = 0.9, kTitle = 1.2, kHeadline = 1.7;
    const auto sized = [&font](double share) {
        if (font.pointSizeF() > 0)
            font.setPointSizeF(font.pointSizeF() * share);
        else
            font.setPixelSize(static_cast<int>(font.pixelSize() * share));
    };
    if (type == Type::Caption) sized(kCaption);
    if (type == Type::Title) sized(kTitle);
    if (type == Type::Headline) sized(kHeadline);
    if (type == Type::Title || type == Type::Headline) font.setWeight(QFont::DemiBold);
    return font;
}

QColor Mixed(const QColor& colour, const QColor& ground, double share) {
    const auto part = [share](float of_colour, float of_ground) {
        return static_cast<float>(of_colour * share + of_ground * (1 - share));
    };
    return QColor::fromRgbF(part(colour.redF(), ground.redF()), part(colour.greenF(), ground.greenF()),
                            part(colour.blueF(), ground.blueF()));
}

double ContrastOf(const QColor& one, const QColor& other) {
    const double first = LuminanceOf(one) + 0.05, second = LuminanceOf(other) + 0.05;
    return first > second ? first / second : second / first;
}

QColor ColourOf(Role role, const QPalette& palette) {
    const QColor surface = palette.color(QPalette::Active, QPalette::Window);
    const QColor raised = palette.color(QPalette::Active, QPalette::Base);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor button = palette.color(QPalette::Active, QPalette::Button);
    const auto readable = [&](const QColor& wish) {
        return ReadableOn(wish, {surface, raised, button, ChosenGround(palette)});
    };
    switch (role) {
        case Role::Surface:
            return surface;
        case Role::Raised:
            return raised;
        case Role::Text:
            return readable(text);
        case Role::MutedText:
            return readable(Mixed(text, surface, 0.65));
        case Role::Accent:
            return ReadableOn(palette.color(QPalette::Active, QPalette::Highlight),
                              {surface, raised, button});
        case Role::OnAccent: {
            const QColor accent = ColourOf(Role::Accent, palette);
            return ReadableOn(palette.color(QPalette::Active, QPalette::HighlightedText), {accent});
        }
        case Role::Danger:
            return readable(QColor(kDanger));
        case Role::Success:
            return readable(QColor(kSuccess));
    }
    return text;
}

QColor ChosenGround(const QPalette& palette) {
    return Mixed(ColourOf(Role::Accent, palette), palette.color(QPalette::Base), 0.22);
}

QColor FoundGround(const QPalette& palette, bool chosen_row) {
    return Mixed(ColourOf(Role::Accent, palette),
                 chosen_row ? ChosenGround(palette) : palette.color(QPalette::Base), 0.3);
}

QColor ColourOf(Role role) {
    return ColourOf(role, QApplication::palette());
}

QPalette OwnPalette(bool dark) {
    const Scheme& scheme = dark ? kDark : kLight;
    const QColor faint = Mixed(QColor(scheme.text), QColor(scheme.surface), 0.45);
    QPalette palette(QColor(scheme.button), QColor(scheme.surface));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::ToolTipText, QPalette::BrightText})
        palette.setColor(role, QColor(scheme.text));
    palette.setColor(QPalette::Base, QColor(scheme.raised));
    palette.setColor(QPalette::AlternateBase, QColor(scheme.raised_row));
    palette.setColor(QPalette::ToolTipBase, QColor(scheme.raised));
    palette.setColor(QPalette::PlaceholderText, QColor(scheme.muted));
    palette.setColor(QPalette::Mid, QColor(scheme.edge));
    palette.setColor(QPalette::Highlight, QColor(scheme.accent));
    palette.setColor(QPalette::HighlightedText, QColor(scheme.on_accent));
    palette.setColor(QPalette::Link, QColor(scheme.accent));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(scheme.edge));
    return palette;
}

bool DesktopHasItsLook() {
    // These three come with the toolkit; a desktop's theme brings its own or colours the first one.
    static const bool kHas = [] {
        const QString style = QApplication::style()->name();
        if (style == QLatin1String("windowsvista") || style == QLatin1String("windows")) return false;
        return style != QLatin1String("fusion") ||
               QApplication::palette() != QApplication::style()->standardPalette();
    }();
    return kHas;
}

void TakeLook(bool dark) {
    if (DesktopHasItsLook()) return;
    if (qobject_cast<LookStyle*>(QApplication::style()) == nullptr) QApplication::setStyle(new LookStyle);
    QApplication::setPalette(OwnPalette(dark));
}

void SetType(QWidget* control, Type type) {
    control->setFont(FontOf(type));
}

void SetExplaining(QLabel* label) {
    SetType(label, Type::Caption);
    label->setForegroundRole(QPalette::PlaceholderText);
}

void SetMainAction(QAbstractButton* button) {
    button->setProperty(kMainActionMark, true);
    RenewIcon(button);
    QFont font = button->font();
    font.setWeight(QFont::DemiBold);
    button->setFont(font);
    // Elsewhere the desktop's style draws it, in the desktop's colours.
    if (DesktopHasItsLook()) FollowPalette(button, &ColoursOfMainAction);
}

void SetBlack(QWidget* window) {
    QPalette black = window->palette();
    black.setColor(QPalette::Window, Qt::black);
    window->setPalette(black);
    window->setAutoFillBackground(true);
}

void SetDestructive(QAbstractButton* button) {
    button->setProperty(kDestructiveMark, true);
    RenewIcon(button);
    if (DesktopHasItsLook()) FollowPalette(button, &ColoursOfDestructive);
}

void FollowPalette(QWidget* control, ColoursOf colours) {
    new PaletteFollower(control, colours);
}

void FillRounded(QPainter& painter, const QRect& place, const QBrush& ground) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(place, kCornerRadius, kCornerRadius);
    painter.restore();
}

void DrawCover(QPainter& painter, const QRect& place, const QPixmap& picture) {
    QSizeF part = QSizeF(place.size()).scaled(QSizeF(picture.size()), Qt::KeepAspectRatio);
    QRectF source(QPointF(), part);
    source.moveCenter(QRectF(picture.rect()).center());
    QPainterPath shape;
    shape.addRoundedRect(place, kCornerRadius, kCornerRadius);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing); // of the corners; the picture has its size already
    painter.setClipPath(shape);
    painter.drawPixmap(QRectF(place), picture, source);
    painter.restore();
}

void DrawShade(QPainter& painter, const QRect& picture) {
    QLinearGradient shade(picture.topLeft(), picture.bottomLeft());
    shade.setColorAt(0.15, QColor::fromRgba(qRgba(qRed(kShade), qGreen(kShade), qBlue(kShade), 0)));
    // From here on a title can be read on a white picture.
    shade.setColorAt(0.5, QColor::fromRgba(qRgba(qRed(kShade), qGreen(kShade), qBlue(kShade), 160)));
    shade.setColorAt(1, QColor::fromRgba(qRgba(qRed(kShade), qGreen(kShade), qBlue(kShade), 225)));
    FillRounded(painter, picture, shade);
}

QColor ShadeText() {
    return Qt::white;
}

QColor BannerColour() {
    return QColor(kBanner);
}

int DrawBadge(QPainter& painter, const QRect& place, const QString& word, Role role) {
    painter.save();
    painter.setFont(FontOf(Type::Caption));
    const QFontMetrics metrics = painter.fontMetrics();
    const int width = metrics.horizontalAdvance(word) + 2 * space::kClose;
    const int height = metrics.height() + space::kTight;
    const QRect badge(place.right() + 1 - width, place.center().y() - height / 2, width, height);
    const QColor ground = ColourOf(role == Role::Accent ? Role::Accent : Role::Surface);
    FillRounded(painter, badge, ground);
    painter.setPen(ColourOf(role == Role::Accent ? Role::OnAccent : role));
    painter.drawText(badge, Qt::AlignCenter, word);
    painter.restore();
    return width;
}

} // namespace kelvash::ui
