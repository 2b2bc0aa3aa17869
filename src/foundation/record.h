// Fixed-layout binary records: one table per record says offset, width, type and default of each field, and
// codec, defaults and the field-by-name access all read it.
//
// Encodings: texts are Windows-1252, blank padded, cut at the width; booleans are 16 bits, -1 and 0; integers
// are little-endian and signed; doubles IEEE 754 in 64 bits.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace kelvash {

// A field's place in the C++ record. The alternative says how it is encoded.
template <class Record>
using FieldMember = std::variant<std::string Record::*,  // text of the field's width
                                 bool Record::*,         // 16-bit boolean
                                 std::int16_t Record::*, // 16 bits
                                 std::int32_t Record::*, // 32 bits
                                 double Record::*>;      // 64 bits

template <class Record>
struct Field {
    std::string_view name;
    std::size_t offset;
    std::size_t width;
    FieldMember<Record> member;
};

// Reading and writing of single values. `bytes` must hold what is asked for.
std::string ReadText(std::string_view bytes);
void WriteText(std::string_view text, std::span<char> field);
bool ReadBoolean(std::string_view bytes);
void WriteBoolean(bool value, std::span<char> field);
std::int64_t ReadInteger(std::string_view bytes);
void WriteInteger(std::int64_t value, std::span<char> field);
double ReadDouble(std::string_view bytes);
void WriteDouble(double value, std::span<char> field);

// The text as a field of that width gives it back: cut at the width (counted in Windows-1252) and trimmed.
std::string FitText(std::string_view text, std::size_t width);

namespace record_detail {
template <class Record>
struct Decoder {
    std::string_view bytes;
    Record& record;
    void operator()(std::string Record::*member) const { record.*member = ReadText(bytes); }
    void operator()(bool Record::*member) const { record.*member = ReadBoolean(bytes); }
    void operator()(std::int16_t Record::*member) const {
        record.*member = static_cast<std::int16_t>(ReadInteger(bytes));
    }
    void operator()(std::int32_t Record::*member) const {
        record.*member = static_cast<std::int32_t>(ReadInteger(bytes));
    }
    void operator()(double Record::*member) const { record.*member = ReadDouble(bytes); }
};

template <class Record>
struct Encoder {
    std::span<char> bytes;
    const Record& record;
    void operator()(std::string Record::*member) const { WriteText(record.*member, bytes); }
    void operator()(bool Record::*member) const { WriteBoolean(record.*member, bytes); }
    void operator()(std::int16_t Record::*member) const { WriteInteger(record.*member, bytes); }
    void operator()(std::int32_t Record::*member) const { WriteInteger(record.*member, bytes); }
    void operator()(double Record::*member) const { WriteDouble(record.*member, bytes); }
};
} // namespace record_detail

// Fills the record from its bytes. Fields that lie wholly or partly behind the end of `bytes` keep what they
// were.
template <class Record, std::size_t Count>
void DecodeRecord(const std::array<Field<Record>, Count>& table, std::string_view bytes, Record& record) {
    for (const Field<Record>& field : table)
        if (field.offset + field.width <= bytes.size())
            std::visit(record_detail::Decoder<Record>{bytes.substr(field.offset, field.width), record},
                       field.member);
}

// Writes every field of the record into its bytes; `bytes` must be as long as the record.
template <class Record, std::size_t Count>
void EncodeRecord(const std::array<Field<Record>, Count>& table, const Record& record,
                  std::span<char> bytes) {
    for (const Field<Record>& field : table)
        std::visit(record_detail::Encoder<Record>{bytes.subspan(field.offset, field.width), record},
                   field.member);
}

} // namespace kelvash
