// Unpacking of stored files under an eye on how much they come to: a stream of some kilobytes can fill a
// disk.
#pragma once

#include <cstdint>
#include <string>

#include "swap/zl_file.h"

namespace kelvash::swap {

// One guard for all the files that are unpacked together. Once they come to more than there is room for, or
// to suspiciously many times their size, it asks, once.
class UnpackGuard {
  public:
    // The folder that is unpacked into.
    explicit UnpackGuard(const std::string& folder);

    // As DecompressFile. After a No it is false, nothing of the file is there, and Refused tells.
    [[nodiscard]] bool Unpack(const std::string& packed, const std::string& target,
                              const MadeFile& made = {});
    bool Refused() const { return wish_ == Wish::No; }

  private:
    bool MayReach(double unpacked, const std::string& packed);

    enum class Wish { Unasked, Yes, No };
    std::string drive_;
    std::int64_t room_;
    double packed_ = 0;   // bytes of the files up to now
    double unpacked_ = 0; // what they came to
    Wish wish_ = Wish::Unasked;
};

} // namespace kelvash::swap
