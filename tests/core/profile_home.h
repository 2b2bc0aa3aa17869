// The file of the profile and its bytes.
#pragma once

#include "core/profile.h"
#include "support/core_home.h"
#include "support/record_bytes.h"

namespace kelvash::core {

// The profile of a first run.
inline std::string DefaultBytes() {
    std::string bytes(1588, '\0');
    test::Put(bytes, 0, "\xFF\xFF");
    test::Put(bytes, 6, "\xFF\xFF");
    test::Put(bytes, 10, test::Blanks(1280));
    test::Put(bytes, 522, "tom2pc.exe");
    test::Put(bytes, 778, "tomb4.exe");
    test::Put(bytes, 1034, "c:\\");
    test::Put(bytes, 1290, "\xFF\xFF");
    test::Put(bytes, 1294, "\xFF\xFF\xFF\xFF\x05");
    test::Put(bytes, 1302, "\xFF\xFF\x05");
    test::Put(bytes, 1308, test::Blanks(256));
    test::Put(bytes, 1564, "\x05");
    test::Put(bytes, 1568, "\xFF\xFF\xFF\xFF");
    return bytes;
}

// One where every field has another value than its default.
inline std::string OtherBytes() {
    std::string bytes(1588, '\0');
    test::Put(bytes, 2, "\xFF\xFF\xFF\xFF");
    test::Put(bytes, 8, "\x34\x12");
    test::Put(bytes, 10, test::Blanks(1280));
    test::Put(bytes, 10, "C:\\My \xE8.kva");
    test::Put(bytes, 266, "C:\\trle");
    test::Put(bytes, 522, "conv.exe");
    test::Put(bytes, 778, "game.exe");
    test::Put(bytes, 1034, "d:\\down");
    test::Put(bytes, 1292, "\xFF\xFF");
    test::Put(bytes, 1298, "\x0A");
    test::Put(bytes, 1304, "\x3C");
    test::Put(bytes, 1308, test::Blanks(256));
    test::Put(bytes, 1308, "C:\\paint.exe");
    test::Put(bytes, 1564, "\x07");
    test::Put(bytes, 1572, "\x01\x02\x03\x04\xFF\xFF");
    test::Put(bytes, 1578, "\xFE\xFF\xFF\xFF\xFF\xFF");
    test::Put(bytes, 1584, "\x02");
    test::Put(bytes, 1586, "\x78\x56");
    return bytes;
}

class Profile : public test::TestHome {
  protected:
    std::filesystem::path file = home / "Kelvash.prf";
};

} // namespace kelvash::core
