#include "zip/zip_reader.h"

namespace kelvash::zip {

namespace {

bool IsAesWithoutChecksum(const zip_stat_t& stat) {
    const bool is_aes = stat.encryption_method == ZIP_EM_AES_128 ||
                        stat.encryption_method == ZIP_EM_AES_192 || stat.encryption_method == ZIP_EM_AES_256;
    return is_aes && stat.crc == 0 && stat.size > 0;
}

} // namespace

bool IsEncrypted(const zip_stat_t& stat) {
    return stat.encryption_method != ZIP_EM_NONE;
}

ZipEntryReader::Opened ZipEntryReader::Open(const zip_stat_t& stat, const std::string& password) {
    static_cast<void>(Close());
    if (IsAesWithoutChecksum(stat)) {
        const char* const name = zip_get_name(zip_, stat.index, ZIP_FL_ENC_RAW);
        switch (aes_.Open({stat.index, name == nullptr ? "" : name, stat.size}, password)) {
            case AesEntries::Found::Ready:
                return Opened::Ready;
            case AesEntries::Found::WrongPassword:
                return Opened::WrongPassword;
            case AesEntries::Found::Damaged:
                return Opened::Unreadable;
        }
    }
    file_ = IsEncrypted(stat) ? zip_fopen_index_encrypted(zip_, stat.index, 0, password.c_str())
                              : zip_fopen_index(zip_, stat.index, 0);
    if (file_ != nullptr) return Opened::Ready;
    const int code = zip_error_code_zip(zip_get_error(zip_));
    return code == ZIP_ER_WRONGPASSWD || code == ZIP_ER_NOPASSWD ? Opened::WrongPassword : Opened::Unreadable;
}

std::int64_t ZipEntryReader::Read(char* block, std::size_t size) {
    return file_ == nullptr ? aes_.Read(block, size) : zip_fread(file_, block, size);
}

bool ZipEntryReader::Close() {
    const bool sound = file_ == nullptr || zip_fclose(file_) == 0;
    file_ = nullptr;
    return sound;
}

} // namespace kelvash::zip
