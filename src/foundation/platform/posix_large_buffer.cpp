#include <sys/mman.h>

#include "foundation/platform/large_buffer.h"

namespace kelvash::platform {

namespace {

// A big page begins at a multiple of its size.
constexpr std::size_t kBigPage = std::size_t{2} << 20;

} // namespace

LargeBuffer::LargeBuffer(std::size_t size) : size_(size) {
    const std::size_t mapped = size + 1; // no mapping is empty
    void* const memory = ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return;
    data_ = static_cast<char*>(memory);
#ifdef MADV_HUGEPAGE
    if (size >= kBigPage) ::madvise(memory, mapped, MADV_HUGEPAGE);
#endif
}

LargeBuffer::~LargeBuffer() {
    if (data_ != nullptr) ::munmap(data_, size_ + 1);
}

} // namespace kelvash::platform
