#include "ui/level_banner.h"

#include <QPainter>

#include "ui/form_support.h"
#include "ui/look.h"
#include "ui/picture_reading.h"

namespace kelvash::ui {

namespace {

// In lines of text.
constexpr int kLines = 11;
constexpr int kFewestLines = 5;

} // namespace

LevelBanner::LevelBanner(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize LevelBanner::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 60, fontMetrics().height() * kLines};
}

QSize LevelBanner::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 20, fontMetrics().height() * kFewestLines};
}

void LevelBanner::ShowLevel(const QString& name, const QString& author, const QString& native_path) {
    if (path_ != native_path) picture_ = {};
    name_ = name;
    author_ = author;
    path_ = native_path;
    ++reading_;
    reads_ = false;
    setToolTip(ToolTipText(author_.isEmpty() ? name_ : name_ + QLatin1Char('\n') + author_));
    setAccessibleName(name_);
    setAccessibleDescription(author_);
    update();
    ReadLater();
}

void LevelBanner::SetSign(std::optional<Glyph> sign) {
    sign_ = sign;
    update();
}

void LevelBanner::ReadLater() {
    if (path_.isEmpty() || pending_) return;
    pending_ = true;
    AfterPainting(this, [this] { Load(); });
}

void LevelBanner::Load() {
    pending_ = false;
    if (path_.isEmpty()) return;
    reads_ = true;
    const QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
    const auto take = [this, shown = size(), reading = ++reading_](const QImage& picture) {
        if (reading != reading_) return;
        reads_ = false;
        picture_ = QPixmap::fromImage(picture);
        update();
        if (shown != size()) ReadLater();
    };
    ReadCoverBeside(this, path_, pixels, nullptr, take);
}

void LevelBanner::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!reads_) ReadLater(); // else it is done behind that reading
}

void LevelBanner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (picture_.isNull())
        FillRounded(painter, rect(), BannerColour());
    else
        DrawCover(painter, rect(), picture_);
    DrawShade(painter, rect());
    QRect words = rect().adjusted(space::kApart, 0, -space::kApart, -space::kNear);
    if (sign_) {
        const int side =
            QFontMetrics(FontOf(Type::Headline)).height() + QFontMetrics(FontOf(Type::Text)).height();
        const QRect sign(words.left(), words.bottom() - side, side, side);
        DrawGlyph(painter, sign.marginsRemoved({0, space::kTight, space::kClose, space::kTight}), *sign_,
                  ShadeText());
        words.setLeft(sign.right() + space::kClose);
    }
    painter.setPen(ShadeText());
    const auto write = [&](const QString& text, Type type) {
        if (text.isEmpty()) return;
        painter.setFont(FontOf(type));
        const QFontMetrics metrics = painter.fontMetrics();
        painter.drawText(words, Qt::AlignLeft | Qt::AlignBottom,
                         metrics.elidedText(text, Qt::ElideRight, words.width()));
        words.setBottom(words.bottom() - metrics.height());
    };
    write(author_, Type::Text);
    write(name_, Type::Headline);
}

} // namespace kelvash::ui
