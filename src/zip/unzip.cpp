// Extracting a zip file: where each entry goes, and its writing.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include "foundation/bytes.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/native_text.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/text.h"
#include "zip/messages.h"
#include "zip/zip.h"
#include "zip/zip_destination.h"
#include "zip/zip_library.h"
#include "zip/zip_names.h"
#include "zip/zip_reader.h"

namespace kelvash::zip {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;
// Whoever answers without looking would be asked for ever.
constexpr int kMostPasswords = 100;

struct Entry {
    zip_uint64_t index = 0;
    std::string name; // as it stands in the zip
    std::vector<std::string> parts;
    zip_stat_t stat = {};
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
        return case_sensitive ? MatchesMaskWithCase(name, mask) : MatchesMask(name, mask);
    });
}

// The time of an entry's "extended timestamp", which no time zone shifts and which has odd seconds too;
// nothing for an entry without one. Layout: a byte of flags, bit 0 for the modification time, then that time
// in four bytes.
std::optional<time_t> ExactTime(zip_t* zip, zip_uint64_t index) {
    constexpr zip_uint16_t kExtendedTimestamp = 0x5455;
    zip_uint16_t length = 0;
    const zip_uint8_t* const field =
        zip_file_extra_field_get_by_id(zip, index, kExtendedTimestamp, 0, &length, ZIP_FL_CENTRAL);
    if (field == nullptr) return std::nullopt;
    ByteReader reader({reinterpret_cast<const char*>(field), length});
    const bool has_time = (reader.Get<std::uint8_t>() & 1) != 0;
    const auto seconds = reader.Get<std::int32_t>();
    return has_time && !reader.Failed() ? std::optional<time_t>(seconds) : std::nullopt;
}

// The share of an entry in the work: an empty one counts too.
double WeightOf(const zip_stat_t& stat) {
    return static_cast<double>(stat.size) + 1;
}

// One extraction at work.
class Extraction {
  public:
    Extraction(UnzipClass& job, zip_t* zip, const ZipWatcher& watcher)
        : job_(job),
          zip_(zip),
          watcher_(watcher),
          destination_(NativePath(job.ExtractDir)),
          reader_(zip, NativePath(job.ZipFileName)) {}

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
            job_.Failed.emplace_back(std::to_string(index + 1), LoadMessage(msg::kZipReasonDamaged));
            return;
        }
        entry.name = ZipNameText(raw);
        std::optional<std::vector<std::string>> parts = ZipNameParts(entry.name);
        if (!parts || IsLink(zip_, index)) {
            (IsZipNameTooLong(entry.name) ? job_.TooLong : job_.Refused).push_back(entry.name);
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
            job_.Failed.emplace_back(entry.name, LoadMessage(msg::kZipReasonWrite));
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
        const std::string fault = target ? Unpack(entry, *target) : LoadMessage(msg::kZipReasonWrite);
        if (job_.Stopped) return;
        if (!fault.empty()) {
            job_.Failed.emplace_back(entry.name, fault);
        } else if (!job_.TestZip) {
            destination_.Remember(*target, TextOfNative(target->filename()));
            job_.Written.push_back(job_.ExtractDir + "\\" + Join(entry.parts, "\\"));
        }
    }

    bool MayWrite(const Entry& entry, const fs::path& target) {
        std::error_code error;
        if (!fs::exists(target, error)) return true;
        const std::string path = job_.ExtractDir + "\\" + Join(entry.parts, "\\");
        if (!job_.OverWriteFiles) return false;
        if (job_.ExtractOnlyNewer && FileTime(path).value_or(0) >= entry.stat.mtime) return false;
        return !job_.PromptOverwrite || AskReplaceFile(FactsOf(entry), path);
    }

    FileFacts FactsOf(const Entry& entry) const {
        constexpr zip_uint64_t kMost = INT64_MAX;
        return {CleanLine(entry.name), static_cast<std::int64_t>(std::min(entry.stat.size, kMost)),
                ExactTime(zip_, entry.index).value_or(entry.stat.mtime)};
    }

    // Unpacks an entry to its place, with another password as long as one seems wrong and the user gives
    // more. Gives what went wrong; after a password that isn't given the job has stopped.
    std::string Unpack(const Entry& entry, const fs::path& target) {
        const std::string fault = MethodFault(entry);
        if (!fault.empty()) return fault;
        if (IsEncrypted(entry.stat) && !password_ && !AskPassword(msg::kZipPassword)) return {};
        for (;;) {
            const Attempt attempt = UnpackOnce(entry, target);
            if (job_.Stopped || attempt.outcome == Outcome::Fault) return attempt.fault;
            if (attempt.outcome == Outcome::Done) {
                proven_ = proven_ || IsEncrypted(entry.stat);
                return {};
            }
            // Some wrong passwords are only noticed when the data turn out to be none. One that is typed
            // again then is the right one of a damaged entry.
            const std::string refused = *password_;
            if (!AskPassword(msg::kZipPasswordWrong)) return {};
            proven_ = attempt.outcome == Outcome::DamagedOrWrongPassword && *password_ == refused;
            if (proven_) return LoadMessage(msg::kZipReasonDamaged);
        }
    }

    enum class Outcome { Done, Fault, WrongPassword, DamagedOrWrongPassword };
    struct Attempt {
        Outcome outcome = Outcome::Done;
        std::string fault{};
    };
    static Attempt FaultOf(MessageId reason) { return {Outcome::Fault, LoadMessage(reason)}; }

    // An old file stands until the new one is whole.
    Attempt UnpackOnce(const Entry& entry, const fs::path& target) {
        const ZipEntryReader::Opened opened = reader_.Open(entry.stat, password_.value_or(std::string()));
        if (opened == ZipEntryReader::Opened::WrongPassword) return {Outcome::WrongPassword};
        if (opened == ZipEntryReader::Opened::Unreadable) return DamageOf(entry);
        std::error_code error;
        const bool replaces = !job_.TestZip && fs::exists(fs::symlink_status(target, error));
        const fs::path partial = replaces ? target.parent_path() / kPartialFile : target;
        if (replaces) platform::Unlink(partial); // of a killed run; a link would be written through
        Attempt attempt = CopyEntry(entry, partial);
        if (!reader_.Close() && attempt.outcome == Outcome::Done) attempt = DamageOf(entry);
        if (job_.TestZip) return attempt;
        if (attempt.outcome == Outcome::Done && !job_.Stopped) {
            platform::SetFileTime(partial, ExactTime(zip_, entry.index).value_or(entry.stat.mtime));
            if (replaces) fs::rename(partial, target, error);
            if (!replaces || !error) return {};
            attempt = FaultOf(msg::kZipReasonWrite);
        }
        fs::remove(partial, error);
        return attempt;
    }

    static std::string MethodFault(const Entry& entry) {
        if (zip_compression_method_supported(entry.stat.comp_method, 0) == 0)
            return LoadMessage(msg::kZipReasonMethod, {std::to_string(entry.stat.comp_method)});
        if (IsEncrypted(entry.stat) && zip_encryption_method_supported(entry.stat.encryption_method, 0) == 0)
            return LoadMessage(msg::kZipReasonEncrypted);
        return {};
    }

    // False, with the job stopped, if the user gives none.
    bool AskPassword(MessageId question) {
        std::optional<std::string> typed;
        if (passwords_asked_++ < kMostPasswords)
            typed = TheUser().Input(LoadMessage(msg::kZipPasswordTitle),
                                    LoadMessageOfOthers(question, {FileNameOf(job_.ZipFileName), kLineBreak}),
                                    {});
        job_.NoPassword = job_.Stopped = !typed.has_value();
        if (typed) password_ = std::move(typed);
        return !job_.Stopped;
    }

    Attempt DamageOf(const Entry& entry) const {
        const bool may_be_password = IsEncrypted(entry.stat) && !proven_;
        return may_be_password ? Attempt{Outcome::DamagedOrWrongPassword} : FaultOf(msg::kZipReasonDamaged);
    }

    Attempt CopyEntry(const Entry& entry, const fs::path& partial) {
        std::ofstream file;
        if (!job_.TestZip) {
            file.open(partial, std::ios::binary | std::ios::trunc);
            if (!file) return FaultOf(msg::kZipReasonWrite);
        }
        zip_uint64_t left = entry.stat.size;
        const double before = done_;
        for (;;) {
            const std::int64_t got = reader_.Read(block_.get(), kBlock);
            if (got < 0) return DamageOf(entry);
            if (got == 0) break;
            if (static_cast<zip_uint64_t>(got) > left) return FaultOf(msg::kZipReasonLonger);
            left -= static_cast<zip_uint64_t>(got);
            if (!job_.TestZip && !file.write(block_.get(), static_cast<std::streamsize>(got)))
                return FaultOf(msg::kZipReasonWrite);
            TellDone(before + static_cast<double>(entry.stat.size - left));
            if (watcher_.poll && watcher_.poll()) {
                job_.Stopped = true;
                return {};
            }
        }
        if (left != 0) return DamageOf(entry);
        if (!job_.TestZip) file.close();
        return job_.TestZip || file ? Attempt{} : FaultOf(msg::kZipReasonWrite);
    }

    UnzipClass& job_;
    zip_t* zip_;
    const ZipWatcher& watcher_;
    ZipDestination destination_;
    ZipEntryReader reader_;
    std::map<std::string, std::pair<zip_uint64_t, zip_uint32_t>> taken_;
    std::unique_ptr<char[]> block_ = std::make_unique<char[]>(kBlock);
    double total_ = 0; // of the weights of all entries
    double done_ = 0;
    std::optional<std::string> password_;
    bool proven_ = false; // an entry came out whole with the password
    int passwords_asked_ = 0;
};

} // namespace

bool UnzipClass::UnZip(const ZipWatcher& watcher) {
    Written.clear();
    Refused.clear();
    Twice.clear();
    TooLong.clear();
    Failed.clear();
    message_.clear();
    Opened = Stopped = NoPassword = false;
    const ZipHandle zip = OpenZip(ZipFileName, ZIP_RDONLY, message_);
    if (!zip) return false;
    Opened = true;
    Extraction(*this, zip.get(), watcher).Run();
    if (NoPassword)
        message_ = LoadMessage(msg::kZipNoPassword, {FileNameOf(ZipFileName)});
    else if (Stopped)
        message_ = LoadMessage(msg::kZipStopped);
    else if (!Failed.empty())
        message_ = Failed.back().first + ": " + Failed.back().second;
    else if (!Written.empty())
        message_ = "  inflating: " + FileNameOf(Written.back());
    return !Stopped && Failed.empty();
}

} // namespace kelvash::zip
