// Reading of zip entries in the second form of AES encryption, which stores no checksum: libzip compares
// their data with it all the same and calls them damaged, so that another library reads them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace kelvash::zip {

class AesEntries {
  public:
    explicit AesEntries(std::filesystem::path zip);
    ~AesEntries();
    AesEntries(const AesEntries&) = delete;
    AesEntries& operator=(const AesEntries&) = delete;

    // Goes to an entry. Quick in the order of the zip.
    struct Wanted {
        std::uint64_t Index = 0; // in the zip's directory
        std::string RawName;     // as it stands in the zip
        std::uint64_t Size = 0;  // bytes, unpacked
    };
    enum class Found { Ready, WrongPassword, Damaged };
    Found Open(const Wanted& wanted, const std::string& password);
    // Up to `size` bytes; 0 at the end, when the data are proven to be the writer's; -1 if they aren't.
    std::int64_t Read(char* block, std::size_t size);

  private:
    bool Start(const std::string& password);
    bool Seek(const Wanted& wanted);

    struct Reader;
    std::filesystem::path zip_;
    std::string password_;
    std::unique_ptr<Reader> reader_;
};

} // namespace kelvash::zip
