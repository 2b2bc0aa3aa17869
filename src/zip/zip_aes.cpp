#include "zip/zip_aes.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <vector>

#include "foundation/native_text.h"

namespace kelvash::zip {

namespace {

constexpr std::size_t kReadBlock = std::size_t{1} << 16;

// libarchive makes slashes of back-slashes.
std::string WithSlashes(std::string name) {
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
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
           archive_read_open_filename(handle, TextOfNative(zip_).c_str(), kReadBlock) == ARCHIVE_OK;
}

// On to the next entry that is the wanted one. A name beyond ASCII is given as the process's locale holds it,
// or isn't: where neither that nor its UTF-8 is the name in the zip, the place counts, which is the same in
// both libraries for all zips whose directory is in the order of their files.
bool AesEntries::Seek(const Wanted& wanted) {
    const std::string raw = WithSlashes(wanted.RawName);
    archive_entry* entry = nullptr;
    for (;;) {
        const int result = archive_read_next_header(reader_->handle, &entry);
        if (result != ARCHIVE_OK && result != ARCHIVE_WARN) return false;
        const std::uint64_t place = reader_->headers++;
        const char* const name = archive_entry_pathname(entry);
        const char* const utf8 = archive_entry_pathname_utf8(entry);
        const bool is_named = (name != nullptr && WithSlashes(name) == raw) ||
                              (utf8 != nullptr && WithSlashes(utf8) == raw) ||
                              (place == wanted.Index && !IsAscii(raw) && (name == nullptr || !IsAscii(name)));
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
