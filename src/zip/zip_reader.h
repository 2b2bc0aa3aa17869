// The contents of a zip's entries, one after the other, whatever they are encrypted with.
#pragma once

#include <zip.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "zip/zip_aes.h"

namespace kelvash::zip {

class ZipEntryReader {
  public:
    ZipEntryReader(zip_t* zip, std::filesystem::path file) : zip_(zip), aes_(std::move(file)) {}
    ~ZipEntryReader() { static_cast<void>(Close()); }
    ZipEntryReader(const ZipEntryReader&) = delete;
    ZipEntryReader& operator=(const ZipEntryReader&) = delete;

    // Opens an entry; `stat` is what the library tells of it. Unreadable has no content that can be had at
    // all.
    enum class Opened { Ready, WrongPassword, Unreadable };
    Opened Open(const zip_stat_t& stat, const std::string& password);
    // Up to `size` bytes; 0 at the end, -1 if the data are damaged.
    std::int64_t Read(char* block, std::size_t size);
    // False if the data turned out to be damaged at their end.
    [[nodiscard]] bool Close();

  private:
    zip_t* zip_;
    zip_file_t* file_ = nullptr;
    AesEntries aes_;
};

// An encrypted entry that can be read with its password.
bool IsEncrypted(const zip_stat_t& stat);

} // namespace kelvash::zip
