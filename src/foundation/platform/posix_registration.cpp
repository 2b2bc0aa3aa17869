#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "foundation/platform/platform.h"
#include "foundation/platform/posix_common.h"
#include "foundation/platform/posix_wine_registry.h"
#include "foundation/text.h"

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

// The database of MIME types is rebuilt by an outside program; it isn't worth waiting longer for.
constexpr double kDatabaseSeconds = 5.0;
constexpr int kWindowsVersionOfWine = 6;

NativeFile DataFolder() {
    return UserDataFolder().parent_path();
}

bool WriteWhole(const NativeFile& file, std::string_view text, bool executable) {
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    NativeFile sibling = file;
    sibling += ".new";
    const int descriptor = OpenForWriting(sibling);
    if (descriptor < 0) return false;
    bool written = WriteBytes(descriptor, text) && (!executable || ::fchmod(descriptor, 0755) == 0);
    written = CloseWritten(descriptor, false) && written;
    if (written && RenameOver(sibling, file, false)) return true;
    Unlink(sibling);
    return false;
}

std::string XmlText(std::string_view text) {
    std::string escaped;
    for (const char byte : text) {
        switch (byte) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += byte;
        }
    }
    return escaped;
}

// A value of a desktop entry: the escapes that hold for all of them.
std::string EntryValue(std::string_view text) {
    std::string escaped;
    for (const char byte : text) {
        switch (byte) {
            case '\\':
                escaped += "\\\\";
                break;
            case '\n':
                escaped += "\\n";
                break;
            case '\r':
                escaped += "\\r";
                break;
            case '\t':
                escaped += "\\t";
                break;
            default:
                escaped += byte;
        }
    }
    return escaped;
}

// One word of an Exec line. Quoted words have escapes of their own, below those of all values.
std::string ExecWord(std::string_view word) {
    std::string quoted = "\"";
    for (const char byte : word) {
        if (std::string_view("\"`$\\").find(byte) != std::string_view::npos) quoted += '\\';
        quoted += byte;
        if (byte == '%') quoted += '%'; // alone it begins a field code
    }
    return quoted + "\"";
}

std::string ExecLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words)
        line += (line.empty() ? "" : " ") + ExecWord(word);
    return line;
}

// The words of a text, double quotes keeping blanks together.
std::vector<std::string> Words(std::string_view text) {
    std::vector<std::string> words;
    std::string word;
    bool quoted = false, begun = false;
    for (const char byte : text) {
        if (byte == '"') {
            quoted = !quoted;
            begun = true;
        } else if (byte == ' ' && !quoted) {
            if (begun) words.push_back(std::exchange(word, {}));
            begun = false;
        } else {
            word += byte;
            begun = true;
        }
    }
    if (begun) words.push_back(word);
    return words;
}

bool IsExecutable(const NativeFile& file) {
    struct stat status {};
    return ::stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & S_IXUSR) != 0;
}

// What starts a target: itself, Wine for a Windows program, the desktop's opener for a document.
std::vector<std::string> StartWords(const NativeFile& target) {
    if (IsWindowsProgram(target)) return {"wine", target.string()};
    if (IsExecutable(target)) return {target.string()};
    return {"xdg-open", target.string()};
}

void UpdateDatabase(std::string_view tool, const NativeFile& folder) {
    const NativeFile program = FindOnPath(tool);
    Process process;
    if (program.empty()) return;
    if (Spawn({program, {folder.string()}, folder, Window::Hidden, false}, process, nullptr) ==
        SpawnResult::Started)
        WaitFor(process, kDatabaseSeconds, nullptr);
}

// The letters of an extension ".kva"; empty for a text that is none.
std::string PlainExtension(std::string_view extension) {
    const bool plain = extension.size() > 1 && extension.front() == '.' &&
                       std::all_of(extension.begin() + 1, extension.end(), [](char c) {
                           return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
                       });
    std::string letters(plain ? extension.substr(1) : std::string_view());
    std::transform(letters.begin(), letters.end(), letters.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return letters;
}

std::string MimePackage(const std::string& type, const std::string& letters, std::string_view description) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
           "  <mime-type type=\"" +
           type +
           "\">\n"
           "    <comment>" +
           XmlText(description) +
           "</comment>\n"
           "    <glob pattern=\"*." +
           letters +
           "\"/>\n"
           "  </mime-type>\n"
           "</mime-info>\n";
}

} // namespace

bool RegisterFileType(std::string_view extension, std::string_view description, std::string_view icon,
                      std::string_view program) {
    const std::string letters = PlainExtension(extension);
    if (letters.empty()) return false;
    const std::string type = "application/x-kelvash-" + letters;
    const NativeFile mime = DataFolder() / "mime";
    const NativeFile applications = DataFolder() / "applications";
    const NativeFile native = NativePath(program);
    const std::string entry =
        "[Desktop Entry]\nType=Application\nName=Kelvash\nComment=" + EntryValue(description) +
        "\nExec=" + EntryValue(ExecWord(native.string())) +
        " %f\nIcon=" + EntryValue(NativePath(icon).string()) + "\nMimeType=" + type +
        ";\nNoDisplay=true\nTerminal=false\n";
    if (!WriteWhole(mime / "packages" / ("kelvash-" + letters + ".xml"),
                    MimePackage(type, letters, description), false) ||
        !WriteWhole(applications / ("kelvash-" + letters + ".desktop"), entry, false))
        return false;
    UpdateDatabase("update-mime-database", mime);
    UpdateDatabase("update-desktop-database", applications);
    return true;
}

bool CreateShortcut(const NativeFile& folder, const NativeFile& target_folder, const NativeFile& target,
                    std::string_view caption, std::string_view arguments) {
    std::vector<std::string> words = StartWords(target);
    const std::vector<std::string> more = Words(arguments);
    words.insert(words.end(), more.begin(), more.end());
    const std::string entry = "[Desktop Entry]\nType=Application\nName=" + EntryValue(caption) +
                              "\nExec=" + EntryValue(ExecLine(words)) +
                              "\nPath=" + EntryValue(target_folder.string()) + "\nTerminal=false\n";
    return WriteWhole(folder / (std::string(caption) + ".desktop"), entry, true);
}

std::string ReadRegistryValue(std::string_view key) {
    const std::string text = ReadWineValue(WinePrefix() / "system.reg", key).value_or(std::string());
    return text.substr(0, text.find('\0'));
}

bool WriteRegistryValues(std::string_view key, std::string_view default_value, std::string_view name,
                         std::string_view value) {
    const NativeFile prefix = WinePrefix();
    const NativeFile file = prefix / "system.reg";
    std::error_code error;
    if (!fs::is_regular_file(file, error)) return true;
    const WineValues values{default_value, name, value};
    return HasWineValues(file, key, values) ||
           (!WineServerRuns(prefix) && WriteWineValues(file, key, values));
}

int WindowsVersion() {
    return kWindowsVersionOfWine;
}

} // namespace kelvash::platform
