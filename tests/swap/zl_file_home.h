// Bytes that pack badly, streams of zlib, and a place for their files.
#pragma once

#include <zlib.h>

#include "support/test_home.h"
#include "swap/zl_file.h"

namespace kelvash::swap {

// Bytes without any pattern, the same at every run.
inline std::string Noise(std::size_t size) {
    std::string bytes;
    std::uint32_t state = 12345;
    while (bytes.size() < size) {
        state = state * 1664525 + 1013904223;
        bytes.push_back(static_cast<char>(state >> 24));
    }
    return bytes;
}

// A stream that zlib itself writes. `window_bits` as zlib takes them: negative for a raw stream, above 15 for
// gzip.
inline std::string PackedByZlib(const std::string& bytes, int level, int window_bits,
                                const std::string& dictionary = "") {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, level, Z_DEFLATED, window_bits, 8, Z_DEFAULT_STRATEGY), Z_OK);
    if (!dictionary.empty())
        deflateSetDictionary(&stream, reinterpret_cast<const Bytef*>(dictionary.data()),
                             static_cast<uInt>(dictionary.size()));
    std::string input = bytes;
    std::string packed(deflateBound(&stream, static_cast<uLong>(bytes.size())) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

class ZlFile : public test::TestHome {
  protected:
    std::filesystem::path Native(const std::string& name) const { return drive / name; }
    bool Unpack(const std::string& stream) {
        test::MakeFile(Native("city.tr4.zl"), stream);
        return DecompressFile("C:\\city.tr4.zl", "C:\\city.tr4");
    }
    void ExpectRefused(const std::string& stream) {
        EXPECT_FALSE(Unpack(stream));
        EXPECT_FALSE(test::Exists(Native("city.tr4")));
        EXPECT_FALSE(test::Exists(Native("city.tr4.new")));
    }
};

} // namespace kelvash::swap
