// How the program draws its controls where the desktop has no style of its own: flat, with round corners, all
// colours from the palette.
#pragma once

#include <QProxyStyle>

namespace kelvash::ui {

// Dynamic properties of buttons: see SetMainAction and SetDestructive in look.h.
inline constexpr const char* kMainActionMark = "kelvash_main_action";
inline constexpr const char* kDestructiveMark = "kelvash_destructive";

class LookStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    LookStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    QIcon standardIcon(StandardPixmap standard, const QStyleOption* option,
                       const QWidget* widget) const override;
    QPalette standardPalette() const override;
};

} // namespace kelvash::ui
