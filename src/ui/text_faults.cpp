#include "ui/text_faults.h"

#include <QStringList>

#include "core/path_field.h"
#include "foundation/text.h"
#include "ui/form_support.h"
#include "ui/messages.h"

namespace kelvash::ui {

namespace {

// Each once, as a reader counts characters.
QStringList ForeignCharacters(const QString& text) {
    QStringList foreign;
    for (const char32_t point : text.toStdU32String()) {
        const QString character = QString::fromUcs4(&point, 1);
        const std::string utf8 = ToUtf8(character);
        if (Utf8FromAnsi(AnsiFromUtf8(utf8)) != utf8 && !foreign.contains(character)) foreign << character;
    }
    return foreign;
}

} // namespace

QString FaultOfText(const QString& typed, std::size_t width) {
    const std::string text(Trim(ToUtf8(typed)));
    if (core::CanKeepText(text, width)) return {};
    const QStringList foreign = ForeignCharacters(typed);
    if (foreign.isEmpty()) return Caption(msg::kFieldTooLong, {std::to_string(width)});
    return Caption(msg::kFieldForeign, {ToUtf8(foreign.join(QLatin1Char(' ')))});
}

} // namespace kelvash::ui
