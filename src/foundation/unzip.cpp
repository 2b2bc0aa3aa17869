// Extracting a zip file: where each entry goes, and its writing.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/text.h"
#include "foundation/zip.h"
#include "foundation/zip_library.h"
#include "foundation/zip_names.h"

namespace kelvash {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;

struct Entry {
    zip_uint64_t index = 0;
    std::string name; // as it stands in the zip
    std::vector<std::string> parts;
    zip_stat_t stat = {};
};

// The names in the folders of a destination, read once each, so that a zip of a hundred thousand entries
// needs no search per entry.
class Destination {
  public:
    explicit Destination(fs::path root) : root_(std::move(root)) {}

    // The path of a file below the root under the spelling that it has there; its folders are made. Nothing
    // if a folder can't be made.
    std::optional<fs::path> PathOf(const std::vector<std::string>& parts) {
        const std::optional<fs::path> folder = FolderOf(parts, parts.size() - 1);
        if (!folder) return std::nullopt;
        return *folder / Spelling(*folder, parts.back());
    }
    // The folder of the first parts, made where it is missing; nothing if it can't be made.
    std::optional<fs::path> FolderOf(const std::vector<std::string>& parts, std::size_t count) {
        fs::path folder = root_;
        for (std::size_t i = 0; i < count; ++i) {
            const fs::path next = folder / Spelling(folder, parts[i]);
            std::error_code error;
            if (!fs::is_directory(fs::symlink_status(next, error))) {
                if (!fs::create_directory(next, error)) return std::nullopt;
                names_[folder][FoldCase(parts[i])] = parts[i];
            }
            folder = next;
        }
        return folder;
    }
    void Remember(const fs::path& file, const std::string& name) {
        names_[file.parent_path()].emplace(FoldCase(name), name);
    }

  private:
    std::string Spelling(const fs::path& folder, const std::string& name) {
        auto known = names_.find(folder);
        if (known == names_.end()) known = names_.emplace(folder, NamesIn(folder)).first;
        const auto found = known->second.find(FoldCase(name));
        return found == known->second.end() ? name : found->second;
    }
    static std::map<std::string, std::string> NamesIn(const fs::path& folder) {
        std::map<std::string, std::string> names;
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            const std::string name = entry->path().filename().string();
            names.emplace(FoldCase(name), name);
        }
        return names;
    }

    fs::path root_;
    std::map<fs::path, std::map<std::string, std::string>> names_;
};

bool IsFolder(const std::string& name) {
    return name.ends_with('/') || name.ends_with('\\');
}

// A symbolic link of a Unix: its content would be the place that it leads to.
bool IsLink(zip_t* zip, zip_uint64_t index) {
    constexpr zip_uint32_t kTypeMask = 0170000;
    constexpr zip_uint32_t kLink = 0120000;
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    return zip_file_get_external_attributes(zip, index, 0, &system, &attributes) == 0 &&
           system == ZIP_OPSYS_UNIX && ((attributes >> 16) & kTypeMask) == kLink;
}

bool IsWanted(const Entry& entry, const std::vector<std::string>& masks, bool case_sensitive) {
    if (masks.empty()) return true;
    const std::string name = Join(entry.parts, "\\");
    return std::any_of(masks.begin(), masks.end(), [&](const std::string& mask) {
        return case_sensitive ? name == mask : MatchesMask(name, mask);
    });
}

// The time of an entry's "extended timestamp", which no time zone shifts and which has odd seconds too;
// nothing for an entry without one. Layout: a byte of flags, bit 0 for the modification time, then that time
// in four bytes.
std::optional<time_t> ExactTime(zip_t* zip, zip_uint64_t index) {
    constexpr zip_uint16_t kExtendedTimestamp = 0x5455;
    constexpr zip_uint16_t kShortest = 5;
    zip_uint16_t length = 0;
    const zip_uint8_t* const field =
        zip_file_extra_field_get_by_id(zip, index, kExtendedTimestamp, 0, &length, ZIP_FL_CENTRAL);
    if (field == nullptr || length < kShortest || (field[0] & 1) == 0) return std::nullopt;
    std::uint32_t seconds = 0;
    for (int i = 4; i > 0; --i)
        seconds = (seconds << 8) | field[i];
    return static_cast<std::int32_t>(seconds);
}

// The share of an entry in the work: an empty one counts too.
double WeightOf(const zip_stat_t& stat) {
    return static_cast<double>(stat.size) + 1;
}

// One extraction at work.
class Extraction {
  public:
    Extraction(UnzipClass& job, zip_t* zip, const ZipWatcher& watcher)
        : job_(job), zip_(zip), watcher_(watcher), destination_(NativePath(job.ExtractDir)) {}

    void Run() {
        const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(zip_, 0));
        zip_stat_t stat;
        for (zip_uint64_t i = 0; i < count && watcher_.share; ++i)
            if (zip_stat_index(zip_, i, 0, &stat) == 0) total_ += WeightOf(stat);
        for (zip_uint64_t i = 0; i < count && !job_.Stopped; ++i) {
            const double before = done_;
            TakeEntry(i);
            if (zip_stat_index(zip_, i, 0, &stat) == 0) TellDone(before + WeightOf(stat));
        }
    }

  private:
    void TellDone(double done) {
        done_ = done;
        if (watcher_.share && total_ > 0) watcher_.share(done_ / total_);
    }

    void TakeEntry(zip_uint64_t index) {
        Entry entry;
        entry.index = index;
        const char* const raw = zip_get_name(zip_, index, ZIP_FL_ENC_RAW);
        if (raw == nullptr || zip_stat_index(zip_, index, 0, &entry.stat) != 0) {
            job_.Failed.emplace_back(std::to_string(index + 1),
                                     LoadMessage(MessageId::kZipReasonDamaged, {}));
            return;
        }
        entry.name = ZipNameText(raw);
        std::optional<std::vector<std::string>> parts = ZipNameParts(entry.name);
        if (!parts || IsLink(zip_, index)) {
            job_.Refused.push_back(entry.name);
            return;
        }
        entry.parts = std::move(*parts);
        if (!IsWanted(entry, job_.ExtractList, job_.CaseSensitive)) return;
        const bool is_folder = IsFolder(entry.name);
        if (is_folder && (!job_.HonorDirectories || job_.TestZip)) return;
        if (!job_.HonorDirectories) entry.parts = {entry.parts.back()};
        if (job_.SpaceToUnderScore)
            for (std::string& part : entry.parts)
                std::replace(part.begin(), part.end(), ' ', '_');
        if (!is_folder)
            Extract(entry);
        else if (!destination_.FolderOf(entry.parts, entry.parts.size()))
            job_.Failed.emplace_back(entry.name, LoadMessage(MessageId::kZipReasonWrite, {}));
    }

    // Of two entries of one name the first stays; the other is worth telling if it isn't the same file again.
    bool ComesTwice(const Entry& entry) {
        const std::pair<zip_uint64_t, zip_uint32_t> content{entry.stat.size, entry.stat.crc};
        const auto [place, is_first] = taken_.emplace(FoldCase(Join(entry.parts, "\\")), content);
        if (!is_first && place->second != content) job_.Twice.push_back(entry.name);
        return !is_first;
    }

    void Extract(const Entry& entry) {
        if (ComesTwice(entry)) return;
        if (watcher_.line && watcher_.line("  inflating: " + entry.name)) {
            job_.Stopped = true;
            return;
        }
        const std::optional<fs::path> target =
            job_.TestZip ? std::optional<fs::path>(fs::path()) : destination_.PathOf(entry.parts);
        if (target && !job_.TestZip && !MayWrite(entry, *target)) return;
        const std::string fault =
            target ? Unpack(entry, *target) : LoadMessage(MessageId::kZipReasonWrite, {});
        if (job_.Stopped) return;
        if (!fault.empty()) {
            job_.Failed.emplace_back(entry.name, fault);
        } else if (!job_.TestZip) {
            destination_.Remember(*target, target->filename().string());
            job_.Written.push_back(job_.ExtractDir + "\\" + Join(entry.parts, "\\"));
        }
    }

    bool MayWrite(const Entry& entry, const fs::path& target) {
        std::error_code error;
        if (!fs::exists(target, error)) return true;
        const std::string path = job_.ExtractDir + "\\" + Join(entry.parts, "\\");
        if (!job_.OverWriteFiles) return false;
        if (job_.ExtractOnlyNewer && FileTime(path).value_or(0) >= entry.stat.mtime) return false;
        return !job_.PromptOverwrite || AskReplaceFile(ZipNameText(entry.name), path);
    }

    // Unpacks an entry to its place; an old file stands until the new one is whole. Gives what went wrong.
    std::string Unpack(const Entry& entry, const fs::path& target) {
        std::string fault = MethodFault(entry);
        if (!fault.empty()) return fault;
        zip_file_t* const source = OpenEntry(entry);
        if (source == nullptr) return LoadMessage(FaultOfLastError(), {});
        std::error_code error;
        const bool replaces = !job_.TestZip && fs::exists(fs::symlink_status(target, error));
        const fs::path partial = replaces ? target.parent_path() / kPartialFile : target;
        if (replaces) platform::Unlink(partial); // of a killed run; a link would be written through
        fault = CopyEntry(entry, source, partial);
        if (zip_fclose(source) != 0 && fault.empty()) fault = DamageOf(entry);
        if (job_.TestZip) return fault;
        if (fault.empty() && !job_.Stopped) {
            platform::SetFileTime(partial, ExactTime(zip_, entry.index).value_or(entry.stat.mtime));
            if (replaces) fs::rename(partial, target, error);
            if (!replaces || !error) return {};
            fault = LoadMessage(MessageId::kZipReasonWrite, {});
        }
        fs::remove(partial, error);
        return fault;
    }

    std::string MethodFault(const Entry& entry) const {
        if (zip_compression_method_supported(entry.stat.comp_method, 0) == 0)
            return LoadMessage(MessageId::kZipReasonMethod, {std::to_string(entry.stat.comp_method)});
        if (entry.stat.encryption_method != ZIP_EM_NONE &&
            zip_encryption_method_supported(entry.stat.encryption_method, 0) == 0)
            return LoadMessage(MessageId::kZipReasonEncrypted, {});
        return {};
    }

    zip_file_t* OpenEntry(const Entry& entry) {
        if (entry.stat.encryption_method == ZIP_EM_NONE) return zip_fopen_index(zip_, entry.index, 0);
        if (!password_asked_) {
            password_asked_ = true;
            password_ =
                TheUser()
                    .Input(LoadMessage(MessageId::kZipPasswordTitle, {}),
                           LoadMessage(MessageId::kZipPassword, {FileNameOf(job_.ZipFileName), kLineBreak}),
                           {})
                    .value_or(std::string());
        }
        return zip_fopen_index_encrypted(zip_, entry.index, 0, password_.c_str());
    }

    MessageId FaultOfLastError() const {
        const int code = zip_error_code_zip(zip_get_error(zip_));
        return code == ZIP_ER_WRONGPASSWD || code == ZIP_ER_NOPASSWD || code == ZIP_ER_ENCRNOTSUPP
                   ? MessageId::kZipReasonEncrypted
                   : MessageId::kZipReasonDamaged;
    }

    // Some wrong passwords are only noticed when the data turn out to be none.
    static std::string DamageOf(const Entry& entry) {
        return LoadMessage(entry.stat.encryption_method == ZIP_EM_NONE ? MessageId::kZipReasonDamaged
                                                                       : MessageId::kZipReasonEncrypted,
                           {});
    }

    std::string CopyEntry(const Entry& entry, zip_file_t* source, const fs::path& partial) {
        std::ofstream file;
        if (!job_.TestZip) {
            file.open(partial, std::ios::binary | std::ios::trunc);
            if (!file) return LoadMessage(MessageId::kZipReasonWrite, {});
        }
        zip_uint64_t left = entry.stat.size;
        for (;;) {
            const zip_int64_t got = zip_fread(source, block_.get(), kBlock);
            if (got < 0) return DamageOf(entry);
            if (got == 0) break;
            if (static_cast<zip_uint64_t>(got) > left) return LoadMessage(MessageId::kZipReasonLonger, {});
            left -= static_cast<zip_uint64_t>(got);
            if (!job_.TestZip && !file.write(block_.get(), static_cast<std::streamsize>(got)))
                return LoadMessage(MessageId::kZipReasonWrite, {});
            TellDone(done_ + static_cast<double>(got));
            if (clock_.Due() && watcher_.poll && watcher_.poll()) {
                job_.Stopped = true;
                return {};
            }
        }
        if (left != 0) return DamageOf(entry);
        if (!job_.TestZip) file.close();
        return job_.TestZip || file ? std::string() : LoadMessage(MessageId::kZipReasonWrite, {});
    }

    UnzipClass& job_;
    zip_t* zip_;
    const ZipWatcher& watcher_;
    Destination destination_;
    std::map<std::string, std::pair<zip_uint64_t, zip_uint32_t>> taken_;
    std::unique_ptr<char[]> block_ = std::make_unique<char[]>(kBlock);
    PollClock clock_;
    double total_ = 0; // of the weights of all entries
    double done_ = 0;
    bool password_asked_ = false;
    std::string password_;
};

} // namespace

bool UnzipClass::UnZip(const ZipWatcher& watcher) {
    Written.clear();
    Refused.clear();
    Twice.clear();
    Failed.clear();
    message_.clear();
    Opened = Stopped = false;
    const ZipHandle zip = OpenZip(ZipFileName, ZIP_RDONLY, message_);
    if (!zip) return false;
    Opened = true;
    Extraction(*this, zip.get(), watcher).Run();
    if (Stopped)
        message_ = LoadMessage(MessageId::kZipStopped, {});
    else if (!Failed.empty())
        message_ = Failed.back().first + ": " + Failed.back().second;
    else if (!Written.empty())
        message_ = "  inflating: " + FileNameOf(Written.back());
    return !Stopped && Failed.empty();
}

} // namespace kelvash
