#include <cstdlib>

#include "support/zip_program.h"

namespace kelvash::test {

bool MakeZipOf(const std::filesystem::path& folder, const std::filesystem::path& zip,
               const std::string& password) {
    const std::string secret = password.empty() ? std::string() : " -P '" + password + "'";
    const std::string command =
        "cd '" + folder.string() + "' && zip -q -r -D" + secret + " '" + zip.string() + "' .";
    return std::system(command.c_str()) == 0;
}

} // namespace kelvash::test
