#include "foundation/platform/posix_keys.h"

#define XK_MISCELLANY
#define XK_LATIN1
#include <X11/keysymdef.h>

namespace kelvash::platform {

namespace {

struct KeyRow {
    int virtual_key;
    KeySym symbol;
    KeySym other = 0;
};

constexpr KeyRow kKeys[] = {{0x08, XK_BackSpace},
                            {0x09, XK_Tab},
                            {0x0D, XK_Return, XK_KP_Enter},
                            {0x10, XK_Shift_L, XK_Shift_R},
                            {0x11, XK_Control_L, XK_Control_R},
                            {0x12, XK_Alt_L, XK_Alt_R},
                            {0x13, XK_Pause},
                            {0x14, XK_Caps_Lock},
                            {0x1B, XK_Escape},
                            {0x20, XK_space},
                            {0x21, XK_Prior},
                            {0x22, XK_Next},
                            {0x23, XK_End},
                            {0x24, XK_Home},
                            {0x25, XK_Left},
                            {0x26, XK_Up},
                            {0x27, XK_Right},
                            {0x28, XK_Down},
                            {0x2C, XK_Print},
                            {0x2D, XK_Insert},
                            {0x2E, XK_Delete},
                            {0x6A, XK_KP_Multiply},
                            {0x6B, XK_KP_Add},
                            {0x6D, XK_KP_Subtract},
                            {0x6E, XK_KP_Decimal},
                            {0x6F, XK_KP_Divide},
                            {0x90, XK_Num_Lock},
                            {0x91, XK_Scroll_Lock},
                            {0xA0, XK_Shift_L},
                            {0xA1, XK_Shift_R},
                            {0xA2, XK_Control_L},
                            {0xA3, XK_Control_R},
                            {0xA4, XK_Alt_L},
                            {0xA5, XK_Alt_R}};

// Codes that run like their symbols.
struct KeyRun {
    int first;
    int last;
    KeySym symbol;
};

constexpr KeyRun kRuns[] = {{'0', '9', XK_0}, {'A', 'Z', XK_a}, {0x60, 0x69, XK_KP_0}, {0x70, 0x87, XK_F1}};

} // namespace

std::vector<KeySym> KeySymbols(int virtual_key) {
    for (const KeyRun& run : kRuns)
        if (virtual_key >= run.first && virtual_key <= run.last)
            return {run.symbol + static_cast<KeySym>(virtual_key - run.first)};
    for (const KeyRow& row : kKeys) {
        if (row.virtual_key != virtual_key) continue;
        if (row.other == 0) return {row.symbol};
        return {row.symbol, row.other};
    }
    return {};
}

} // namespace kelvash::platform
