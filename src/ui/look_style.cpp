#include "ui/look_style.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QGroupBox>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>
#include <optional>

#include "ui/icons.h"
#include "ui/look.h"
#include "ui/look_marks.h"
#include "ui/look_scroll.h"

namespace kelvash::ui {

namespace {

bool Has(const QStyleOption* option, QStyle::StateFlag flag) {
    return (option->state & flag) != 0;
}

bool IsMarked(const QWidget* widget, const char* mark) {
    return widget != nullptr && widget->property(mark).toBool();
}

void DrawBox(QPainter* painter, const QRect& place, const QColor& fill, const QColor& edge,
             double width = 1) {
    const QRectF line = QRectF(place).adjusted(width / 2, width / 2, -width / 2, -width / 2);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(edge.isValid() ? QPen(edge, width) : QPen(Qt::NoPen));
    painter->setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    painter->drawRoundedRect(line, kCornerRadius, kCornerRadius);
    painter->restore();
}

// A colour a step further from its ground under the mouse, two when pressed.
QColor Stepped(const QStyleOption* option, const QColor& colour, const QColor& towards) {
    constexpr double kStep = 0.08;
    if (Has(option, QStyle::State_Sunken)) return Mixed(towards, colour, 2 * kStep);
    if (Has(option, QStyle::State_MouseOver)) return Mixed(towards, colour, kStep);
    return colour;
}

void DrawButton(const QStyleOption* option, QPainter* painter, const QWidget* widget) {
    const QPalette& palette = option->palette;
    const QColor text = palette.color(QPalette::WindowText);
    const bool enabled = Has(option, QStyle::State_Enabled);
    if (Has(option, QStyle::State_On)) {
        const QColor accent = ColourOf(Role::Accent, palette);
        DrawBox(painter, option->rect, Mixed(accent, palette.color(QPalette::Button), 0.18), accent);
    } else if (IsMarked(widget, kMainActionMark) && enabled) {
        const QColor accent = ColourOf(Role::Accent, palette);
        DrawBox(painter, option->rect, Stepped(option, accent, ColourOf(Role::OnAccent, palette)), {});
    } else {
        const QColor ground = palette.color(enabled ? QPalette::Button : QPalette::Window);
        DrawBox(painter, option->rect, enabled ? Stepped(option, ground, text) : ground,
                palette.color(QPalette::Mid));
    }
    if (Has(option, QStyle::State_HasFocus) && Has(option, QStyle::State_KeyboardFocusChange))
        DrawBox(painter, option->rect, {}, palette.color(QPalette::WindowText), 2);
}

void DrawField(const QStyleOption* option, QPainter* painter) {
    const QPalette& palette = option->palette;
    const bool enabled = Has(option, QStyle::State_Enabled);
    const bool focus = enabled && Has(option, QStyle::State_HasFocus);
    DrawBox(painter, option->rect, palette.color(enabled ? QPalette::Base : QPalette::Window),
            focus ? ColourOf(Role::Accent, palette) : palette.color(QPalette::Mid), focus ? 2 : 1);
}

// That of a list or a text with the keyboard says so, even if there is nothing in it.
void DrawFrame(const QStyleOption* option, QPainter* painter, const QWidget* widget) {
    const bool focus =
        Has(option, QStyle::State_HasFocus) && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr;
    DrawBox(painter, option->rect, {},
            focus ? ColourOf(Role::Accent, option->palette) : option->palette.color(QPalette::Mid),
            focus ? 2 : 1);
}

// A chosen row's ground is a hint of the accent.
void DrawRow(const QStyleOption* option, QPainter* painter) {
    const QPalette& palette = option->palette;
    const QColor ground = palette.color(QPalette::Base);
    if (Has(option, QStyle::State_Selected))
        FillRounded(*painter, option->rect, ChosenGround(palette));
    else if (Has(option, QStyle::State_MouseOver) && Has(option, QStyle::State_Enabled))
        FillRounded(*painter, option->rect, Mixed(palette.color(QPalette::Text), ground, 0.06));
}

// The text that a button's ground asks for.
QStyleOptionButton Lettered(const QStyleOptionButton& button, const QWidget* widget) {
    QStyleOptionButton lettered = button;
    if (!Has(&button, QStyle::State_Enabled)) return lettered;
    if (IsMarked(widget, kMainActionMark))
        lettered.palette.setColor(QPalette::ButtonText, ColourOf(Role::OnAccent, button.palette));
    else if (IsMarked(widget, kDestructiveMark))
        lettered.palette.setColor(QPalette::ButtonText, ColourOf(Role::Danger, button.palette));
    return lettered;
}

constexpr int kIconGap = space::kClose; // between an icon and its text
constexpr int kUsualGap = 4;            // what the toolkit reckons for it

struct IconAndText {
    const QIcon& icon;
    QSize icon_size;
    QString text;
};

bool HasBoth(const QStyleOptionButton& button) {
    return !button.icon.isNull() && !button.text.isEmpty() &&
           (button.features & QStyleOptionButton::HasMenu) == 0;
}

bool HasBoth(const QStyleOptionToolButton& button) {
    return button.toolButtonStyle == Qt::ToolButtonTextBesideIcon && !button.icon.isNull() &&
           !button.text.isEmpty();
}

// Both side by side, in the middle of the option's place.
void DrawIconAndText(const QStyle& style, const QStyleOption& option, QPainter* painter,
                     const QWidget* widget, const IconAndText& label) {
    const bool enabled = Has(&option, QStyle::State_Enabled);
    const bool letters = style.styleHint(QStyle::SH_UnderlineShortcut, &option, widget) != 0;
    const int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine |
                      (letters ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);
    const int text = painter->fontMetrics().size(flags, label.text).width();
    const QRect& place = option.rect;
    QRect icon({}, label.icon_size);
    icon.moveCenter(place.center());
    icon.moveLeft(place.left() + std::max(0, (place.width() - icon.width() - kIconGap - text) / 2));
    const QRect words(icon.right() + 1 + kIconGap, place.top(), text, place.height());
    label.icon.paint(painter, QStyle::visualRect(option.direction, place, icon), Qt::AlignCenter,
                     enabled ? QIcon::Normal : QIcon::Disabled,
                     Has(&option, QStyle::State_On) ? QIcon::On : QIcon::Off);
    style.drawItemText(painter, QStyle::visualRect(option.direction, place, words), flags, option.palette,
                       enabled, label.text, QPalette::ButtonText);
}

// The label of a button; false for one that the toolkit draws.
bool DrawLabel(const QStyle& style, const QStyleOption* option, QPainter* painter, const QWidget* widget) {
    if (const auto* push = qstyleoption_cast<const QStyleOptionButton*>(option);
        push != nullptr && HasBoth(*push)) {
        DrawIconAndText(style, *push, painter, widget, {push->icon, push->iconSize, push->text});
        return true;
    }
    if (const auto* tool = qstyleoption_cast<const QStyleOptionToolButton*>(option);
        tool != nullptr && HasBoth(*tool)) {
        painter->setFont(tool->font);
        DrawIconAndText(style, *tool, painter, widget, {tool->icon, tool->iconSize, tool->text});
        return true;
    }
    return false;
}

// The text of a chosen row stays as it is.
template <class Option>
Option WithOwnText(const Option& item) {
    Option plain = item;
    plain.palette.setColor(QPalette::HighlightedText, item.palette.color(QPalette::Text));
    return plain;
}

// The title stands above the frame.
void DrawGroup(const QStyleOption* option, QPainter* painter, const QWidget* widget) {
    const auto* const group = qobject_cast<const QGroupBox*>(widget);
    const bool titled = group != nullptr && !group->title().isEmpty();
    QRect frame = option->rect;
    if (titled) frame.setTop(frame.top() + option->fontMetrics.height() + space::kTight);
    const QPalette& palette = option->palette;
    DrawBox(painter, frame, Mixed(palette.color(QPalette::Base), palette.color(QPalette::Window), 0.5),
            palette.color(QPalette::Mid));
}

std::optional<QIcon> OwnIcon(QStyle::StandardPixmap standard) {
    switch (standard) {
        case QStyle::SP_MessageBoxInformation:
            return IconOf(Glyph::Notice, Role::Accent);
        case QStyle::SP_MessageBoxQuestion:
            return IconOf(Glyph::Question, Role::Accent);
        case QStyle::SP_MessageBoxWarning:
            return IconOf(Glyph::Warning, Role::Danger);
        case QStyle::SP_MessageBoxCritical:
            return IconOf(Glyph::Failure, Role::Danger);
        case QStyle::SP_DirIcon:
        case QStyle::SP_DirOpenIcon:
        case QStyle::SP_DirClosedIcon:
            return IconOf(Glyph::Folder);
        case QStyle::SP_DriveCDIcon:
        case QStyle::SP_DriveDVDIcon:
            return IconOf(Glyph::Disc);
        case QStyle::SP_DriveHDIcon:
        case QStyle::SP_DriveFDIcon:
        case QStyle::SP_DriveNetIcon:
            return IconOf(Glyph::Drive);
        default:
            return std::nullopt;
    }
}

void DrawBar(const QStyleOptionProgressBar& bar, QPainter* painter) {
    const double range = bar.maximum - bar.minimum;
    if (range <= 0 || bar.progress <= bar.minimum) return;
    QRect done = bar.rect;
    done.setWidth(std::max(2 * kCornerRadius,
                           static_cast<int>(bar.rect.width() * (bar.progress - bar.minimum) / range)));
    done = QStyle::visualRect(bar.direction, bar.rect, done);
    FillRounded(*painter, done, ColourOf(Role::Accent, bar.palette));
}

} // namespace

LookStyle::LookStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void LookStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    switch (element) {
        case PE_PanelButtonCommand:
        case PE_PanelButtonTool:
            DrawButton(option, painter, widget);
            return;
        case PE_PanelLineEdit:
            if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
                frame != nullptr && frame->lineWidth > 0)
                DrawField(option, painter);
            return;
        case PE_FrameLineEdit:
            DrawField(option, painter);
            return;
        case PE_Frame:
            DrawFrame(option, painter, widget);
            return;
        case PE_FrameGroupBox:
            DrawGroup(option, painter, widget);
            return;
        case PE_PanelItemViewItem:
        case PE_PanelItemViewRow:
            DrawRow(option, painter);
            return;
        case PE_IndicatorCheckBox:
        case PE_IndicatorItemViewItemCheck:
            DrawCheckMark(*option, *painter);
            return;
        case PE_IndicatorRadioButton:
            DrawChoiceMark(*option, *painter);
            return;
        case PE_FrameFocusRect:
            if (Has(option, State_KeyboardFocusChange))
                DrawBox(painter, option->rect, {}, ColourOf(Role::Accent, option->palette));
            return;
        case PE_FrameStatusBarItem:
            return;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void LookStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    if (element == CE_PushButtonLabel) {
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            const QStyleOptionButton lettered = Lettered(*button, widget);
            if (DrawLabel(*this, &lettered, painter, widget)) return;
            QProxyStyle::drawControl(element, &lettered, painter, widget);
            return;
        }
    }
    if (element == CE_CheckBoxLabel || element == CE_RadioButtonLabel) {
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            QStyleOptionButton aligned = *button;
            aligned.text = button->text.trimmed(); // some captions begin with a blank, but not all
            QProxyStyle::drawControl(element, &aligned, painter, widget);
            return;
        }
    }
    if (element == CE_ToolButtonLabel && DrawLabel(*this, option, painter, widget)) return;
    if (element == CE_ItemViewItem) {
        if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option)) {
            const QStyleOptionViewItem plain = WithOwnText(*item);
            QProxyStyle::drawControl(element, &plain, painter, widget);
            return;
        }
    }
    if (element == CE_MenuItem || element == CE_MenuBarItem) {
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            QStyleOptionMenuItem plain = WithOwnText(*item);
            plain.palette.setColor(QPalette::Highlight, ChosenGround(item->palette));
            QProxyStyle::drawControl(element, &plain, painter, widget);
            return;
        }
    }
    if (element == CE_ProgressBarGroove) {
        FillRounded(
            *painter, option->rect,
            Mixed(option->palette.color(QPalette::WindowText), option->palette.color(QPalette::Window), 0.1));
        return;
    }
    if (element == CE_ProgressBarContents) {
        if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
            bar != nullptr && bar->maximum > bar->minimum) {
            DrawBar(*bar, painter);
            return;
        }
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void LookStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    if (control == CC_ScrollBar) {
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            DrawScrollBar(*bar, *painter, widget);
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int LookStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return space::kNear;
        case PM_LayoutHorizontalSpacing:
        case PM_LayoutVerticalSpacing:
            return space::kClose;
        case PM_DefaultFrameWidth:
            return 2;
        case PM_ToolBarIconSize:
        case PM_SmallIconSize:
        case PM_ButtonIconSize:
            return QFontMetrics(QApplication::font()).height();
        case PM_ScrollBarExtent:
            return space::kNear;
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
            return 0;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize LookStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    const int line = option == nullptr ? 0 : option->fontMetrics.height();
    switch (type) {
        case CT_PushButton:
            whole.rheight() = std::max(whole.height(), line + space::kNear);
            whole.rwidth() += space::kClose;
            if (const auto* push = qstyleoption_cast<const QStyleOptionButton*>(option);
                push != nullptr && HasBoth(*push))
                whole.rwidth() += kIconGap - kUsualGap;
            break;
        case CT_LineEdit:
        case CT_ComboBox:
            whole.rheight() = std::max(whole.height(), line + space::kNear);
            break;
        case CT_ToolButton:
            whole = whole.expandedTo({line + space::kNear, line + space::kNear});
            if (const auto* tool = qstyleoption_cast<const QStyleOptionToolButton*>(option);
                tool != nullptr && HasBoth(*tool))
                whole.rwidth() += kIconGap - kUsualGap + space::kClose;
            break;
        case CT_MenuItem:
            if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
                item != nullptr && item->menuItemType != QStyleOptionMenuItem::Separator)
                whole.rheight() = std::max(whole.height(), line + space::kClose);
            break;
        case CT_GroupBox:
        case CT_ItemViewItem:
            whole.rheight() += space::kTight;
            break;
        case CT_MenuBarItem:
            whole += QSize(space::kTight, space::kTight);
            break;
        default:
            break;
    }
    return whole;
}

QRect LookStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                const QWidget* widget) const {
    if (control == CC_ScrollBar)
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
            return ScrollBarPart(*bar, part);
    QRect place = QProxyStyle::subControlRect(control, option, part, widget);
    // Some air between a frame and its title.
    if (control == CC_GroupBox && part == SC_GroupBoxContents) place.setTop(place.top() + space::kTight);
    return place;
}

int LookStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
    if (hint == SH_EtchDisabledText || hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
}

QIcon LookStyle::standardIcon(StandardPixmap standard, const QStyleOption* option,
                              const QWidget* widget) const {
    const std::optional<QIcon> own = OwnIcon(standard);
    return own.has_value() ? *own : QProxyStyle::standardIcon(standard, option, widget);
}

QPalette LookStyle::standardPalette() const {
    return OwnPalette(false);
}

} // namespace kelvash::ui
