#include "ui/theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

#include "ui/dark_wish.h"

namespace kelvash::ui {

namespace {

QPalette DarkPalette() {
    const QColor window(0x3a, 0x3c, 0x40);
    const QColor base(0x28, 0x2a, 0x2d);
    const QColor text(0xdf, 0xe1, 0xe5);
    const QColor faint(0x90, 0x94, 0x9b);
    QPalette dark(QColor(0x53, 0x56, 0x5c), window);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::ToolTipText, QPalette::BrightText})
        dark.setColor(role, text);
    dark.setColor(QPalette::Base, base);
    dark.setColor(QPalette::AlternateBase, QColor(0x30, 0x32, 0x36));
    dark.setColor(QPalette::ToolTipBase, base);
    dark.setColor(QPalette::PlaceholderText, faint);
    dark.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Link, QColor(0x6b, 0x9b, 0xfa));
    dark.setColor(QPalette::Dark, QColor(0x1c, 0x1d, 0x20));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, faint);
    return dark;
}

} // namespace

Theme::Theme() {
    // A desktop with a platform theme of its own has set the palette already.
    if (!IsDark()) WatchDarkWish(this, SetDark);
}

bool Theme::IsDark() {
    constexpr int kMiddle = 128;
    return QApplication::palette().color(QPalette::Window).lightness() < kMiddle;
}

void Theme::SetDark(bool dark) {
    // Native styles draw with colours of their own; this one takes the palette's.
    if (dark) QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(dark ? DarkPalette() : QApplication::style()->standardPalette());
}

} // namespace kelvash::ui
