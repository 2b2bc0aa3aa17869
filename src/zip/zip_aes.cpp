#include "zip/zip_aes.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <vector>

namespace kelvash::zip {

namespace {

constexpr std::size_t kReadBlock = std::size_t{1} << 16;

// libarchive makes slashes of back-slashes.
std::string WithSlashes(std::string name) {
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

} // namespace

struct AesEntries::Reader {
    Reader() : handle(archive_read_new()) {}
    ~Reader() { archive_read_free(handle); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    archive* handle;
    std::uint64_t headers = 0;
    std::vector<char> first = std::vector<char>(kReadBlock); // read ahead: only data tell a wrong password
    std::size_t held = 0;
    std::size_t given = 0;
};

AesEntries::AesEntries(std::filesystem::path zip) : zip_(std::move(zip)) {}

AesEntries::~AesEntries() = default;

bool AesEntries::Start(const std::string& password) {
    reader_ = std::make_unique<Reader>();
    password_ = password;
    archive* const handle = reader_->handle;
    return archive_read_support_format_zip_seekable(handle) == ARCHIVE_OK &&
           archive_read_add_passphrase(handle, password.c_str()) == ARCHIVE_OK &&
           archive_read_open_filename(handle, zip_.string().c_str(), kReadBlock) == ARCHIVE_OK;
}

// On to the next entry that is the wanted one. A name that the process's locale can't hold isn't given: then
// the place counts, which is the same in both libraries for all zips whose directory is in the order of their
// files.
bool AesEntries::Seek(const Wanted& wanted) {
    archive_entry* entry = nullptr;
    for (;;) {
        const int result = archive_read_next_header(reader_->handle, &entry);
        if (result != ARCHIVE_OK && result != ARCHIVE_WARN) return false;
        const std::uint64_t place = reader_->headers++;
        const char* const name = archive_entry_pathname(entry);
        const bool is_named =
            name == nullptr ? place == wanted.Index : WithSlashes(name) == WithSlashes(wanted.RawName);
        if (is_named && static_cast<std::uint64_t>(archive_entry_size(entry)) == wanted.Size) return true;
    }
}

AesEntries::Found AesEntries::Open(const Wanted& wanted, const std::string& password) {
    const bool goes_on = reader_ != nullptr && password == password_;
    if ((!goes_on || !Seek(wanted)) && (!Start(password) || !Seek(wanted))) {
        reader_ = nullptr;
        return Found::Damaged;
    }
    const la_ssize_t got = archive_read_data(reader_->handle, reader_->first.data(), kReadBlock);
    if (got < 0) {
        const char* const text = archive_error_string(reader_->handle);
        const std::string error = text == nullptr ? "" : text;
        reader_ = nullptr;
        return error.find("passphrase") == std::string::npos ? Found::Damaged : Found::WrongPassword;
    }
    reader_->held = static_cast<std::size_t>(got);
    reader_->given = 0;
    return Found::Ready;
}

std::int64_t AesEntries::Read(char* block, std::size_t size) {
    if (reader_ == nullptr) return -1;
    if (reader_->given < reader_->held) {
        const std::size_t piece = std::min(size, reader_->held - reader_->given);
        std::copy_n(reader_->first.data() + reader_->given, piece, block);
        reader_->given += piece;
        return static_cast<std::int64_t>(piece);
    }
    const la_ssize_t got = archive_read_data(reader_->handle, block, size);
    if (got >= 0) return got;
    reader_ = nullptr;
    return -1;
}

} // namespace kelvash::zip
