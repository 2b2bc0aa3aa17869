// Any bytes as a zip: it is listed and extracted, and nothing appears beside the destination.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "foundation/drives.h"
#include "zip/zip.h"
#include "zip/zip_module.h"
#include "zip/zip_names.h"

namespace {

namespace fs = std::filesystem;

// A drive of the fuzzer's own, in memory where the system offers that.
fs::path MakeDrive() {
    std::string name = fs::exists("/dev/shm") ? "/dev/shm/kelvash-fuzz-XXXXXX" : "/tmp/kelvash-fuzz-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    if (!kelvash::SetAppFolder(name) || !kelvash::SetDrive('C', name, kelvash::DriveType::Fixed))
        std::abort();
    return name;
}

std::size_t CountIn(const fs::path& folder) {
    std::size_t count = 0;
    for ([[maybe_unused]] const fs::directory_entry& entry : fs::directory_iterator(folder))
        ++count;
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvash;
    static const fs::path drive = MakeDrive();
    const fs::path out = drive / "out";
    fs::remove_all(out);
    fs::create_directory(out);
    {
        std::ofstream file(drive / "a.zip", std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    static_cast<void>(zip::ZipNameParts(zip::ZipNameText({reinterpret_cast<const char*>(data), size})));
    const std::size_t before = CountIn(drive);
    std::string message;
    const auto listed = zip::ListZip("C:\\a.zip", message);
    std::int64_t bytes = 0;
    if (listed)
        for (const zip::ZipEntry& entry : *listed)
            bytes += entry.Size < 1 << 20 ? entry.Size : 1 << 20;
    if (!listed || bytes > 1 << 20) return 0; // large ones take the fuzzer's time
    zip::UnzipClass unzip;
    for (const zip::ZipFolders folders : {zip::ZipFolders::Kept, zip::ZipFolders::Flat}) {
        zip::UnzipSettings("C:\\a.zip", "C:\\out", folders, unzip);
        static_cast<void>(unzip.UnZip({}));
    }
    if (CountIn(drive) != before) std::abort();
    return 0;
}
