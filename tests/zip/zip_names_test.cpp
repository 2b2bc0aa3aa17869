#include "zip/zip_names.h"

#include <gtest/gtest.h>

#include "foundation/plain_name.h"

namespace kelvash::zip {
namespace {

// What comes of a zip's entry is plain, whatever it was.
TEST(ZipNames, AreMadeOfPlainNames) {
    for (const char* name : {"a<b>.txt", "dir./x", "dir /x..",
                             "a\x01"
                             "b",
                             "a:b?c*", "x\x7F", "readme."})
        for (const std::string& part : ZipNameParts(name).value_or(std::vector<std::string>{}))
            EXPECT_TRUE(PlainName::From(part)) << name;
    EXPECT_EQ(ZipNameParts("dir./x ."), (std::vector<std::string>{"dir", "x"}));
    EXPECT_FALSE(ZipNameParts("a/COM\u00B2.txt"));
    EXPECT_FALSE(ZipNameParts("a/" + std::string(256, 'n')));
    EXPECT_TRUE(IsZipNameTooLong("a/" + std::string(256, 'n')));
    for (const std::string& name : {"a/" + std::string(255, 'n'), std::string("../a"), std::string("/a")})
        EXPECT_FALSE(IsZipNameTooLong(name)) << name;
}

} // namespace
} // namespace kelvash::zip
