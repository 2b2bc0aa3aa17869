// Pictures of strangers.
#pragma once

#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kelvash::swap {

// A JPEG of one colour in another kind than the program writes.
inline std::string ForeignJpeg(int pixel_format, int subsampling, int flags, int width = 32,
                               int height = 32) {
    const std::size_t pixel = static_cast<std::size_t>(tjPixelSize[pixel_format]);
    const std::vector<unsigned char> pixels(static_cast<std::size_t>(width * height) * pixel, 100);
    const tjhandle codec = tjInitCompress();
    unsigned char* data = nullptr;
    unsigned long size = 0;
    EXPECT_EQ(tjCompress2(codec, pixels.data(), width, 0, height, pixel_format, &data, &size, subsampling, 95,
                          flags),
              0);
    std::string jpeg(reinterpret_cast<const char*>(data), size);
    tjFree(data);
    tjDestroy(codec);
    return jpeg;
}

inline void SetU32(std::string& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<char>(value >> (8 * i) & 0xFF);
}

} // namespace kelvash::swap
