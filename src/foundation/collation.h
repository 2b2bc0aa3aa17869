// The order of texts in lists that the user reads.
#pragma once

#include <string>
#include <string_view>

namespace kelvash {

// A key by whose bytes texts are put in order: case and diacritics don't count ("Über" stands beside "ubi"),
// but tell texts apart that are equal else. The same on every system and in every language. For lists of
// files and for names that are compared see FoldCase.
std::string CollationKey(std::string_view text);

} // namespace kelvash
