#include "ui/icons.h"

#include <QAbstractButton>
#include <QApplication>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <algorithm>
#include <array>
#include <optional>

#include "ui/look_style.h"

// They lie in a library, whose parts the linker leaves out unless somebody asks for them.
static bool TakeIcons() {
    Q_INIT_RESOURCE(icons);
    return true;
}

namespace kelvash::ui {

namespace {

constexpr std::array kFiles = {
#define KELVASH_GLYPH(name, file) #file,
#include "ui/icons.inc"
#undef KELVASH_GLYPH
};

constexpr int kSmallSide = 48; // pixels of the smaller drawings; the larger ones have four times as many

constexpr const char* kGlyphMark = "kelvash_glyph"; // property of a button

// The drawing that is no smaller than a side, if there is one.
QString FileOf(Glyph glyph, int side) {
    [[maybe_unused]] static const bool kAreThere = TakeIcons();
    return QStringLiteral(":/kelvash/icons/%1/%2")
        .arg(side <= kSmallSide ? kSmallSide : 4 * kSmallSide)
        .arg(QLatin1String(kFiles.at(static_cast<std::size_t>(glyph))));
}

// The set's drawings are of one colour, which this sets.
QPixmap Drawn(Glyph glyph, const QSize& size, const QColor& colour) {
    const QString key = QStringLiteral("kelvash-%1-%2x%3-%4")
                            .arg(static_cast<int>(glyph))
                            .arg(size.width())
                            .arg(size.height())
                            .arg(colour.rgba());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    const int side = std::min(size.width(), size.height());
    QImage drawing(FileOf(glyph, side), "png");
    drawing = drawing.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    pixmap = QPixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.drawImage((size.width() - side) / 2, (size.height() - side) / 2, drawing);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), colour);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

class GlyphEngine final : public QIconEngine {
  public:
    explicit GlyphEngine(Glyph glyph, std::optional<Role> role = {}) : glyph_(glyph), role_(role) {}

    QIconEngine* clone() const override { return new GlyphEngine(glyph_, role_); }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        DrawGlyph(*painter, rect, glyph_, ColourFor(mode));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return Drawn(glyph_, size, ColourFor(mode));
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal) override {
        return pixmap(size, mode, state);
    }

  private:
    QColor ColourFor(QIcon::Mode mode) const {
        const QPalette palette = QApplication::palette();
        if (mode == QIcon::Disabled) return palette.color(QPalette::Disabled, QPalette::ButtonText);
        return role_.has_value() ? ColourOf(*role_) : palette.color(QPalette::Active, QPalette::ButtonText);
    }

    Glyph glyph_;
    std::optional<Role> role_; // the palette's colour without one
};

} // namespace

QIcon IconOf(Glyph glyph) {
    return QIcon(new GlyphEngine(glyph));
}

QIcon IconOf(Glyph glyph, Role role) {
    return QIcon(new GlyphEngine(glyph, role));
}

void SetIcon(QAbstractButton* button, Glyph glyph) {
    button->setProperty(kGlyphMark, static_cast<int>(glyph));
    RenewIcon(button);
}

void RenewIcon(QAbstractButton* button) {
    const QVariant mark = button->property(kGlyphMark);
    if (!mark.isValid()) return;
    const auto glyph = static_cast<Glyph>(mark.toInt());
    if (button->property(kMainActionMark).toBool())
        button->setIcon(IconOf(glyph, Role::OnAccent));
    else if (button->property(kDestructiveMark).toBool())
        button->setIcon(IconOf(glyph, Role::Danger));
    else
        button->setIcon(IconOf(glyph));
}

void DrawGlyph(QPainter& painter, const QRect& place, Glyph glyph, const QColor& colour) {
    const qreal ratio = painter.device()->devicePixelRatioF();
    QPixmap pixmap = Drawn(glyph, (QSizeF(place.size()) * ratio).toSize(), colour);
    pixmap.setDevicePixelRatio(ratio);
    painter.drawPixmap(place.topLeft(), pixmap);
}

} // namespace kelvash::ui
