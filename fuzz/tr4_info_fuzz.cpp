// Any bytes as a tr4.inf: what is read can be written, and read again as the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/tr4_info.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvash::core;
    const std::vector<Tr4Info> list = DecodeTr4Info({reinterpret_cast<const char*>(data), size});
    if (list.size() * kTr4InfoSize > size) std::abort();
    const std::string bytes = EncodeTr4Info(list);
    const std::vector<Tr4Info> again = DecodeTr4Info(bytes);
    if (again.size() != list.size() || EncodeTr4Info(again) != bytes) std::abort();
    return 0;
}
