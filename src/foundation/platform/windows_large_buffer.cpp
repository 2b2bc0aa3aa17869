#include <new>

#include "foundation/platform/large_buffer.h"

namespace kelvash::platform {

// Big blocks come straight from the system here, and big pages would need a privilege.
LargeBuffer::LargeBuffer(std::size_t size) : data_(new (std::nothrow) char[size + 1]), size_(size) {}

LargeBuffer::~LargeBuffer() {
    delete[] data_;
}

} // namespace kelvash::platform
