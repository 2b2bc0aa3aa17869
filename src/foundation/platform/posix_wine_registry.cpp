#include "foundation/platform/posix_wine_registry.h"

#include <sys/stat.h>

#include <charconv>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>

#include "foundation/text.h"

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

// A longer line is no text value of use.
constexpr std::size_t kLineLimit = std::size_t{1} << 16;
constexpr std::size_t kReadBlock = std::size_t{1} << 16;
constexpr std::size_t kWriteBlock = std::size_t{1} << 16;
// Between 1601, from which Windows counts, and 1970, in seconds.
constexpr std::int64_t kEpochDifference = 11644473600;

// Reads a file line by line, by blocks; a read error ends it.
class LineSource {
  public:
    explicit LineSource(std::istream& file) : file_(file), block_(kReadBlock, '\0') {}

    // The next line without its line end; false at the end of the file. `whole` says whether all of it is
    // there.
    bool Next(std::string& line, bool& whole) {
        line.clear();
        whole = true;
        bool any = false;
        while (at_ < end_ || Fill()) {
            any = true;
            const std::string_view rest(block_.data() + at_, end_ - at_);
            const std::size_t length = rest.find('\n');
            const std::string_view part = rest.substr(0, length);
            whole = whole && line.size() + part.size() <= kLineLimit;
            if (whole) line += part;
            at_ += part.size();
            if (length == std::string_view::npos) continue;
            ++at_;
            break;
        }
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return any;
    }

  private:
    bool Fill() {
        file_.read(block_.data(), static_cast<std::streamsize>(block_.size()));
        at_ = 0;
        end_ = static_cast<std::size_t>(file_.gcount());
        return end_ > 0;
    }

    std::istream& file_;
    std::string block_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
};

void AppendUtf8(std::string& text, std::uint32_t code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | (code >> 6));
        text += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | (code >> 12));
        text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        text += static_cast<char>(0xF0 | (code >> 18));
        text += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// Reads an escaped text up to an unescaped `end`.
class Unescaper {
  public:
    Unescaper(std::string_view bytes, char end) : bytes_(bytes), end_(end) {}

    // Nothing if the end is missing. `rest` is what stands behind the end.
    std::optional<std::string> Read(std::string_view& rest) {
        while (at_ < bytes_.size() && bytes_[at_] != end_) {
            const char byte = bytes_[at_++];
            if (byte != '\\')
                text_ += byte;
            else if (at_ < bytes_.size())
                TakeEscape();
        }
        if (at_ >= bytes_.size()) return std::nullopt;
        rest = bytes_.substr(at_ + 1);
        return text_;
    }

  private:
    void TakeEscape() {
        static constexpr std::string_view kLetters = "abtnvfre";
        static constexpr std::string_view kControls = "\a\b\t\n\v\f\r\x1B";
        const char letter = bytes_[at_];
        if (letter == 'x') {
            ++at_;
            TakeCharacter(Number(16, 4));
        } else if (letter >= '0' && letter <= '7') {
            AppendUtf8(text_, Number(8, 3));
        } else {
            ++at_;
            const std::size_t control = kLetters.find(letter);
            text_ += control == std::string_view::npos ? letter : kControls[control];
        }
    }

    std::uint32_t Number(int base, std::size_t digits) {
        std::uint32_t value = 0;
        const std::string_view part = bytes_.substr(at_, digits);
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), value, base);
        at_ += static_cast<std::size_t>(end - part.data());
        return value;
    }

    // Characters beyond 16 bits come as two halves.
    void TakeCharacter(std::uint32_t code) {
        const bool high = code >= 0xD800 && code < 0xDC00;
        if (high && bytes_.substr(at_).starts_with("\\x")) {
            at_ += 2;
            const std::uint32_t low = Number(16, 4);
            if (low >= 0xDC00 && low < 0xE000) code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
        }
        AppendUtf8(text_, code >= 0xD800 && code < 0xE000 ? '?' : code);
    }

    std::string_view bytes_;
    char end_;
    std::size_t at_ = 0;
    std::string text_;
};

std::vector<std::uint32_t> Utf16FromUtf8(std::string_view text) {
    std::vector<std::uint32_t> units;
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        std::uint32_t code = length == 1 ? first : first & (0xFFU >> (length + 1));
        for (std::size_t j = 1; j < length && i + j < text.size(); ++j)
            code = (code << 6) | (static_cast<unsigned char>(text[i + j]) & 0x3F);
        i += length;
        if (code >= 0x10000) {
            units.push_back(0xD800 + ((code - 0x10000) >> 10));
            units.push_back(0xDC00 + (code & 0x3FF));
        } else {
            units.push_back(code);
        }
    }
    return units;
}

// The text as Wine writes it. `special` are the two characters that end or begin such a text.
std::string Escaped(std::string_view text, std::string_view special) {
    std::string escaped;
    for (const std::uint32_t unit : Utf16FromUtf8(text)) {
        char number[16];
        if (unit > 127) {
            std::snprintf(number, sizeof number, "\\x%04x", unit);
            escaped += number;
        } else if (unit < 32) {
            std::snprintf(number, sizeof number, "\\%03o", unit);
            escaped += number;
        } else {
            const char byte = static_cast<char>(unit);
            if (byte == '\\' || special.find(byte) != std::string_view::npos) escaped += '\\';
            escaped += byte;
        }
    }
    return escaped;
}

// The key of a section line; nothing for any other line.
std::optional<std::string> SectionKey(std::string_view line) {
    std::string_view rest;
    if (!line.starts_with('[')) return std::nullopt;
    return Unescaper(line.substr(1), ']').Read(rest);
}

// The name of a value line, empty for the default value, and what stands behind its "="; nothing for any
// other line.
struct ValueLine {
    std::string name;
    std::string_view data;
};
std::optional<ValueLine> SplitValueLine(std::string_view line) {
    ValueLine value;
    std::string_view rest;
    if (line.starts_with('@')) {
        rest = line.substr(1);
    } else if (line.starts_with('"')) {
        const std::optional<std::string> name = Unescaper(line.substr(1), '"').Read(rest);
        if (!name) return std::nullopt;
        value.name = *name;
    }
    if (!rest.starts_with('=')) return std::nullopt;
    value.data = rest.substr(1);
    return value;
}

struct Value {
    std::string name;
    std::string text;
};

// A text value ("..." or str(2):"..."); nothing for any other line.
std::optional<Value> TextValue(std::string_view line) {
    std::optional<ValueLine> value = SplitValueLine(line);
    if (!value) return std::nullopt;
    if (value->data.starts_with("str(2):")) value->data.remove_prefix(7);
    if (!value->data.starts_with('"')) return std::nullopt;
    std::string_view rest;
    const std::optional<std::string> text = Unescaper(value->data.substr(1), '"').Read(rest);
    if (!text) return std::nullopt;
    return Value{value->name, *text};
}

// The same key as 32-bit programs have it in a 64-bit prefix; empty for a key that has no such twin.
std::string TwinOf(std::string_view key) {
    constexpr std::string_view kSoftware = "software\\";
    if (!StartsWithNoCase(key, kSoftware)) return {};
    return "Software\\Wow6432Node\\" + std::string(key.substr(kSoftware.size()));
}

// Gives each text value of the file to `take` with its key, until that answers false.
void ForEachValue(const NativeFile& file,
                  const std::function<bool(const std::string& key, const Value&)>& take) {
    std::ifstream lines(file, std::ios::binary);
    LineSource source(lines);
    std::string line, key;
    bool whole = true;
    while (source.Next(line, whole)) {
        if (!whole) continue;
        if (const auto section = SectionKey(line))
            key = *section;
        else if (const auto value = key.empty() ? std::nullopt : TextValue(line); value && !take(key, *value))
            return;
    }
}

std::string SectionHead(std::string_view key) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t seconds = std::chrono::duration_cast<std::chrono::seconds>(now).count();
    char times[64];
    std::snprintf(times, sizeof times, "] %lld\n#time=%llx\n", static_cast<long long>(seconds),
                  static_cast<unsigned long long>((seconds + kEpochDifference) * 10000000));
    return "[" + Escaped(key, "[]") + times;
}

std::string ValueLines(const WineValues& values) {
    return "@=\"" + Escaped(values.default_value, "\"") + "\"\n\"" + Escaped(values.name, "\"") + "\"=\"" +
           Escaped(values.value, "\"") + "\"\n";
}

// Copies the registry with the two values in their key, collecting small writes.
class Rewriter {
  public:
    Rewriter(int descriptor, std::string_view key, const WineValues& values)
        : descriptor_(descriptor), key_(key), values_(values) {}

    bool Copy(std::istream& file) {
        LineSource source(file);
        std::string line;
        bool whole = true;
        if (!source.Next(line, whole) || !line.starts_with("WINE REGISTRY")) return false;
        bool good = TakeLine(line);
        while (good && source.Next(line, whole))
            good = whole && TakeLine(line); // never lose half a line
        if (!done_) pending_ += "\n" + SectionHead(key_) + ValueLines(values_);
        return good && !file.bad() && Flush();
    }

  private:
    bool TakeLine(const std::string& line) {
        const auto section = SectionKey(line);
        if (section) inside_ = EqualNoCase(*section, key_);
        if (section && inside_) {
            pending_ += SectionHead(*section) + ValueLines(values_);
            done_ = true;
        } else if (!inside_ || !IsReplaced(line)) {
            pending_ += line + "\n";
        }
        return pending_.size() < kWriteBlock || Flush();
    }

    // An old line of what is written anew, or its continuation.
    bool IsReplaced(const std::string& line) {
        const auto value = SplitValueLine(line);
        replacing_ = replacing_ || line.starts_with("#time=") ||
                     (value && (value->name.empty() || EqualNoCase(value->name, values_.name)));
        const bool replaced = replacing_;
        replacing_ = replacing_ && line.ends_with('\\');
        return replaced;
    }

    bool Flush() {
        const bool written = WriteBytes(descriptor_, pending_);
        pending_.clear();
        return written;
    }

    int descriptor_;
    std::string_view key_;
    const WineValues& values_;
    std::string pending_;
    bool inside_ = false;
    bool replacing_ = false;
    bool done_ = false;
};

// Of a process's folder in /proc.
bool IsWineServer(const fs::path& process) {
    std::ifstream name(process / "comm");
    std::string comm;
    return std::getline(name, comm) && comm.starts_with("wineserver");
}

// A server holds the lock of its folder open, which bears the prefix's numbers; where the folder lies is a
// matter of the distribution.
bool HoldsFileBelow(const fs::path& process, std::string_view folder) {
    std::error_code error;
    for (fs::directory_iterator at(process / "fd", error), end; !error && at != end; at.increment(error)) {
        std::error_code closed;
        const fs::path file = fs::read_symlink(at->path(), closed);
        if (file.native().find(folder) != std::string::npos) return true;
    }
    return false;
}

} // namespace

std::optional<std::string> ReadWineValue(const NativeFile& file, std::string_view key) {
    const std::string twin = TwinOf(key);
    std::optional<std::string> own, other;
    ForEachValue(file, [&](const std::string& at, const Value& value) {
        if (!own && EqualNoCase(at, key)) own = value.text;
        if (!other && !twin.empty() && EqualNoCase(at, twin)) other = value.text;
        return !own;
    });
    return own ? own : other;
}

bool HasWineValues(const NativeFile& file, std::string_view key, const WineValues& values) {
    bool has_default = false, has_named = false;
    ForEachValue(file, [&](const std::string& at, const Value& value) {
        if (!EqualNoCase(at, key)) return true;
        has_default = has_default || (value.name.empty() && value.text == values.default_value);
        has_named = has_named || (EqualNoCase(value.name, values.name) && value.text == values.value);
        return true;
    });
    return has_default && has_named;
}

bool WriteWineValues(const NativeFile& file, std::string_view key, const WineValues& values) {
    std::ifstream old(file, std::ios::binary);
    struct stat status {};
    if (!old || ::stat(file.c_str(), &status) != 0) return false;
    NativeFile sibling = file;
    sibling += ".kelvash";
    const int descriptor = OpenForWriting(sibling);
    if (descriptor < 0) return false;
    bool written = ::fchmod(descriptor, status.st_mode & 07777) == 0;
    written = written && Rewriter(descriptor, key, values).Copy(old);
    written = CloseWritten(descriptor, true) && written;
    if (written && RenameOver(sibling, file, true)) return true;
    Unlink(sibling);
    return false;
}

bool WineServerRuns(const NativeFile& prefix) {
    struct stat status {};
    if (::stat(prefix.c_str(), &status) != 0) return false;
    char folder[64];
    std::snprintf(folder, sizeof folder, "/server-%llx-%llx/", static_cast<unsigned long long>(status.st_dev),
                  static_cast<unsigned long long>(status.st_ino));
    std::error_code error;
    for (fs::directory_iterator at("/proc", error), end; !error && at != end; at.increment(error))
        if (IsWineServer(at->path()) && HoldsFileBelow(at->path(), folder)) return true;
    return false;
}

} // namespace kelvash::platform
