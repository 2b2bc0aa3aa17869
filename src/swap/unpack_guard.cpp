#include "swap/unpack_guard.h"

#include <algorithm>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/user.h"
#include "swap/compression_messages.h"

namespace kelvash::swap {

namespace {

// Files that unpack to more than this and to so many times their size are asked about.
constexpr double kLargeContent = 268435456.0;
constexpr double kSuspiciousFactor = 100;

} // namespace

UnpackGuard::UnpackGuard(const std::string& folder) : drive_(folder.substr(0, 2)), room_(FreeSpace(folder)) {}

bool UnpackGuard::Unpack(const std::string& packed, const std::string& target, const MadeFile& made) {
    packed_ += static_cast<double>(FileSize(packed));
    const double before = unpacked_;
    const MayGrow may_grow = [&](std::int64_t bytes) {
        return MayReach(before + static_cast<double>(bytes), packed);
    };
    return DecompressFile(packed, target, may_grow, made);
}

bool UnpackGuard::MayReach(double unpacked, const std::string& packed) {
    unpacked_ = unpacked;
    const bool fits = room_ < 0 || unpacked <= static_cast<double>(room_);
    const double limit = std::max(kLargeContent, kSuspiciousFactor * packed_);
    if ((fits && unpacked <= limit) || wish_ == Wish::Yes) return true;
    if (wish_ == Wish::No) return false;
    const auto times = static_cast<std::int64_t>(unpacked / std::max(1.0, packed_));
    const bool goes_on =
        AskYesNo(MessageStyle::Exclamation,
                 LoadMessageOfOthers(msg::kUnpackTooLarge,
                                     {FileNameOf(packed), FormatSize(static_cast<std::int64_t>(unpacked)),
                                      std::to_string(times), drive_,
                                      FormatSize(std::max<std::int64_t>(0, room_)), kLineBreak}));
    wish_ = goes_on ? Wish::Yes : Wish::No;
    return goes_on;
}

} // namespace kelvash::swap
