// Fixed-layout binary records: one table per record says offset, width, type and default of each field, and
// codec, defaults and the field-by-name access all read it.
//
// Encodings are those of foundation/bytes.h: texts are blank padded and cut at the width, booleans are 16
// bits.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "foundation/bytes.h"

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

// True if the fields of a table follow each other without a gap, each as wide as its type, up to `size`: to
// be asserted beside the table.
template <class Record, std::size_t Count>
constexpr bool IsLayout(const std::array<Field<Record>, Count>& table, std::size_t size) {
    constexpr std::array<std::size_t, 5> kWidths = {0, 2, 2, 4, 8}; // 0: any
    std::size_t end = 0;
    for (const Field<Record>& field : table) {
        const std::size_t width = kWidths[field.member.index()];
        if (field.offset != end || (width != 0 && width != field.width)) return false;
        end += field.width;
    }
    return end == size;
}

namespace record_detail {
template <class Record>
struct Decoder {
    ByteReader field;
    std::size_t width;
    Record& record;
    void operator()(std::string Record::*member) { record.*member = field.Text(width); }
    void operator()(bool Record::*member) { record.*member = field.Boolean(); }
    template <ByteNumber Number>
    void operator()(Number Record::*member) {
        record.*member = field.Get<Number>();
    }
};

template <class Record>
struct Encoder {
    ByteWriter& bytes;
    std::size_t width;
    const Record& record;
    void operator()(std::string Record::*member) const { bytes.Text(record.*member, width); }
    void operator()(bool Record::*member) const { bytes.Boolean(record.*member); }
    template <ByteNumber Number>
    void operator()(Number Record::*member) const {
        bytes.Put<Number>(record.*member);
    }
};
} // namespace record_detail

// Fills the record from its bytes. Fields that lie wholly or partly behind the end of `bytes` keep what they
// were.
template <class Record, std::size_t Count>
void DecodeRecord(const std::array<Field<Record>, Count>& table, std::string_view bytes, Record& record) {
    for (const Field<Record>& field : table)
        if (field.offset + field.width <= bytes.size())
            std::visit(record_detail::Decoder<Record>{ByteReader(bytes.substr(field.offset, field.width)),
                                                      field.width, record},
                       field.member);
}

// Puts every field of the record behind what the writer holds.
template <class Record, std::size_t Count>
void EncodeRecord(const std::array<Field<Record>, Count>& table, const Record& record, ByteWriter& bytes) {
    for (const Field<Record>& field : table)
        std::visit(record_detail::Encoder<Record>{bytes, field.width, record}, field.member);
}

} // namespace kelvash
