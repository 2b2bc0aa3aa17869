// Numbers and texts in the bytes of a file: little-endian, texts in Windows-1252, every step checked against
// what is left. Nothing here throws, and nothing takes memory because a file states a number.
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kelvash {

// Integers of 8 to 64 bits in two's complement, and doubles (IEEE 754, 64 bits).
template <class Number>
concept ByteNumber = (std::integral<Number> && !std::same_as<Number, bool>) || std::same_as<Number, double>;

// Takes values from the front of bytes, which must outlive it.
//
// Asked for more than is left it has failed, for good: it takes nothing any more and gives 0 and empty texts.
// So a group of values is read first and Failed() asked once behind it.
class ByteReader {
  public:
    explicit ByteReader(std::string_view bytes) : bytes_(bytes) {}

    bool Failed() const { return failed_; }
    std::size_t Left() const { return bytes_.size(); }
    // True if `stated` items of `size` bytes (above 0) are left. A count that a file states goes through this
    // or Held before anything is made for it.
    bool Holds(std::int64_t stated, std::size_t size) const {
        return stated >= 0 && Held(stated, size) == static_cast<std::uint64_t>(stated);
    }
    // As many of the stated items as are left whole; none for a number below 0.
    std::size_t Held(std::int64_t stated, std::size_t size) const;

    std::string_view Bytes(std::size_t count);
    void Skip(std::size_t count) { Bytes(count); }
    template <ByteNumber Number>
    Number Get();
    // 16 bits; anything but 0 is true.
    bool Boolean() { return Get<std::int16_t>() != 0; }
    // A text of that many bytes, trimmed.
    std::string Text(std::size_t width);
    // A text behind its length in 16 bits, as it stands. A length below 0 fails.
    std::string CountedText();

  private:
    std::string_view bytes_;
    bool failed_ = false;
};

// Puts values behind each other. Numbers name their type, which is their width in the file.
class ByteWriter {
  public:
    std::size_t Size() const { return bytes_.size(); }
    // All that was put; the writer is empty then.
    std::string Take() { return std::exchange(bytes_, {}); }

    void Bytes(std::string_view bytes) { bytes_ += bytes; }
    void Zeros(std::size_t count) { bytes_.append(count, '\0'); }
    template <ByteNumber Number>
    void Put(std::type_identity_t<Number> value);
    // -1 or 0 in 16 bits.
    void Boolean(bool value) { Put<std::int16_t>(value ? -1 : 0); }
    // A text cut at that many bytes, or padded with blanks to them.
    void Text(std::string_view text, std::size_t width);
    // A text behind its length in 16 bits, cut at 32767 bytes.
    void CountedText(std::string_view text);

  private:
    std::string bytes_;
};

template <ByteNumber Number>
Number ByteReader::Get() {
    std::uint64_t bits = 0;
    const std::string_view bytes = Bytes(sizeof(Number));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bits |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    if constexpr (std::same_as<Number, double>)
        return std::bit_cast<double>(bits);
    else
        return static_cast<Number>(bits);
}

template <ByteNumber Number>
void ByteWriter::Put(std::type_identity_t<Number> value) {
    std::uint64_t bits = 0;
    if constexpr (std::same_as<Number, double>)
        bits = std::bit_cast<std::uint64_t>(value);
    else
        bits = static_cast<std::uint64_t>(value);
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bytes_.push_back(static_cast<char>(bits >> (8 * i) & 0xFF));
}

// The text as a field of that many bytes gives it back: cut there, counted in Windows-1252, and trimmed.
std::string FitText(std::string_view text, std::size_t width);

} // namespace kelvash
