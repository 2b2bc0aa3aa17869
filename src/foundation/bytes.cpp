#include "foundation/bytes.h"

#include <algorithm>
#include <limits>

#include "foundation/text.h"

namespace kelvash {

std::size_t ByteReader::Held(std::int64_t stated, std::size_t size) const {
    const auto wanted = static_cast<std::uint64_t>(std::max<std::int64_t>(stated, 0));
    return static_cast<std::size_t>(std::min<std::uint64_t>(wanted, bytes_.size() / size));
}

std::string_view ByteReader::Bytes(std::size_t count) {
    failed_ = failed_ || count > bytes_.size();
    if (failed_) return {};
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return taken;
}

std::string ByteReader::Text(std::size_t width) {
    return Utf8FromAnsi(Trim(Bytes(width)));
}

std::string ByteReader::CountedText() {
    const auto length = Get<std::int16_t>();
    failed_ = failed_ || length < 0;
    return Utf8FromAnsi(Bytes(static_cast<std::size_t>(std::max<std::int16_t>(length, 0))));
}

void ByteWriter::Text(std::string_view text, std::size_t width) {
    std::string bytes = AnsiFromUtf8(text);
    bytes.resize(width, ' ');
    bytes_ += bytes;
}

void ByteWriter::CountedText(std::string_view text) {
    std::string bytes = AnsiFromUtf8(text);
    bytes.resize(std::min<std::size_t>(bytes.size(), std::numeric_limits<std::int16_t>::max()));
    Put<std::int16_t>(static_cast<std::int16_t>(bytes.size()));
    bytes_ += bytes;
}

std::string FitText(std::string_view text, std::size_t width) {
    ByteWriter field;
    field.Text(text, width);
    const std::string bytes = field.Take();
    return ByteReader(bytes).Text(width);
}

} // namespace kelvash
