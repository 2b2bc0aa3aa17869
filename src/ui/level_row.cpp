#include "ui/level_row.h"

#include <string>

#include "ui/Principale_messages.h"
#include "ui/form_support.h"
#include "ui/fragments.h"

namespace kelvash::ui {

bool IsOriginal(const LevelRow& level) {
    return level.code == 0;
}

QString LineOf(const LevelRow& level) {
    return IsOriginal(level) && level.line.isEmpty() ? Caption(msg::kMainOriginal) : level.line;
}

std::vector<LevelBadge> BadgesOf(const LevelRow& level) {
    std::vector<LevelBadge> badges;
    if (level.in_trle) badges.push_back({Caption(msg::kMainInTrle), Role::Accent});
    if (level.cd != 0)
        badges.push_back({Caption(msg::kMainOnCd, {std::to_string(level.cd)}), Role::MutedText});
    if (level.packed) badges.push_back({Caption(msg::kMainPacked), Role::MutedText});
    return badges;
}

QString SpokenOf(const LevelRow& level) {
    QStringList parts;
    for (const LevelBadge& badge : BadgesOf(level))
        parts << badge.word;
    if (const QString line = LineOf(level); !line.isEmpty()) parts << line;
    return parts.join(FromUtf8(LoadFragment(fragment::kSpokenGap)));
}

} // namespace kelvash::ui
