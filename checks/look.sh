#!/usr/bin/env bash
# Colours, sizes in pixels and style sheets stand in src/ui/look* alone; forms speak of roles and steps.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

words='QColor\(|QRgb\b|#[0-9a-fA-F]{6}\b|setStyleSheet|setPixelSize|setPointSize|Qt::(white|black|red|green|blue|yellow|gray|grey)\b'
words+='|set(Spacing|ContentsMargins|MinimumWidth|MinimumHeight|MaximumWidth|FixedWidth|FixedHeight|FixedSize|MinimumSize|Indent|Margin)\([0-9]*[2-9][0-9]*[,)]'
mapfile -t files < <(find src/ui -name '*.cpp' -o -name '*.h' | grep -v '/look' | sort)
((${#files[@]})) || { echo "no forms found" >&2; exit 1; }
if grep -nE "$words" "${files[@]}"; then
    echo "These belong into src/ui/look.h."
    exit 1
fi
