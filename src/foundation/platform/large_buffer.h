// Memory for a whole file, not filled with zeroes. Nothing is taken from the system before it is written to,
// so a buffer may be far bigger than what it comes to hold; and it comes in big pages where there are any: a
// quarter of the time of unpacking a level would be spent on small ones.
#pragma once

#include <cstddef>
#include <utility>

namespace kelvash::platform {

class LargeBuffer {
  public:
    LargeBuffer() = default;
    // Converts to false where there isn't so much memory. A size of 0 is fine.
    explicit LargeBuffer(std::size_t size);
    ~LargeBuffer();
    LargeBuffer(LargeBuffer&& other) noexcept { *this = std::move(other); }
    LargeBuffer& operator=(LargeBuffer&& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        return *this;
    }

    explicit operator bool() const { return data_ != nullptr; }
    char* data() const { return data_; }
    std::size_t size() const { return size_; }

  private:
    char* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace kelvash::platform
