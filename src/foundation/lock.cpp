#include "foundation/lock.h"

#include <chrono>
#include <fstream>
#include <map>

#include "foundation/drives.h"
#include "foundation/native_text.h"
#include "foundation/platform/platform.h"
#include "foundation/pumping.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "foundation/waiting.h"

namespace kelvash {

namespace fs = std::filesystem;

namespace {

constexpr double kPollSeconds = 0.05;
// Who has just taken a lock writes its name the instant after.
constexpr int kNoteLooks = 10;
constexpr double kNoteSeconds = 0.005;

std::string_view SuffixOf(LockKind kind) {
    switch (kind) {
        case LockKind::Change:
            return ".lock";
        case LockKind::Profile:
            return ".profile.lock";
        case LockKind::Window:
            return ".window.lock";
        case LockKind::Watch:
            return ".watch.lock";
    }
    return {};
}

// An open file that this process has locked.
struct LockedFile {
    int descriptor;
    explicit LockedFile(int locked) : descriptor(locked) {}
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;
    ~LockedFile() {
        platform::WriteNote(descriptor, {}); // nobody holds it any more
        platform::CloseLockFile(descriptor);
    }
};

// Those of this process by name: the system would give it a second lock on a second descriptor, or none.
struct LockedFiles {
    std::map<std::string, std::weak_ptr<LockedFile>> ByName;
};

std::map<std::string, std::weak_ptr<LockedFile>>& OwnLocks() {
    return Lifelong<LockedFiles>::Get().ByName;
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    for (char& letter : line)
        if (letter == '\n' || letter == '\r') letter = ' ';
    return line + "\n";
}

std::string NoteOf(std::string_view doing) {
    return OneLine(TextOfNative(platform::ExecutablePath().filename())) +
           OneLine(std::to_string(platform::OwnProcessId())) + OneLine(doing);
}

// A note that is just being written tells nothing.
LockHolder ReadNote(const fs::path& file) {
    LockHolder holder;
    std::string process;
    std::ifstream note(file, std::ios::binary);
    if (std::getline(note, holder.Program) && std::getline(note, process) &&
        std::getline(note, holder.Doing) && !note.eof()) {
        holder.Process = WholeNumber(process).value_or(0);
        return holder;
    }
    return {};
}

// Waits a little for the name of who has just come.
LockHolder ReadHolder(const fs::path& file) {
    LockHolder holder = ReadNote(file);
    for (int look = 1; look < kNoteLooks && holder.Process == 0; ++look) {
        WaitSeconds(kNoteSeconds, Wait::Sleep);
        holder = ReadNote(file);
    }
    return holder;
}

} // namespace

LockResult FolderLock::Take(std::string_view folder, LockKind kind, std::string_view doing,
                            LockHolder& holder) {
    Release();
    holder = {};
    const fs::path runtime = RuntimeFolder();
    if (runtime.empty()) return LockResult::Failed;
    const fs::path file = runtime / (FolderIdentity(folder) + std::string(SuffixOf(kind)));
    std::weak_ptr<LockedFile>& own = OwnLocks()[TextOfNative(file)];
    if (const std::shared_ptr<LockedFile> held = own.lock()) {
        file_ = held;
        return LockResult::Taken;
    }
    const int descriptor = platform::OpenLockFile(file);
    if (descriptor < 0) return LockResult::Failed;
    const LockResult result = platform::TryLock(descriptor);
    if (result != LockResult::Taken) {
        platform::CloseLockFile(descriptor);
        if (result == LockResult::Held) holder = ReadHolder(file);
        return result;
    }
    const auto taken = std::make_shared<LockedFile>(descriptor);
    platform::WriteNote(descriptor, NoteOf(doing)); // one that can't be written leaves its holder unnamed
    own = taken;
    file_ = taken;
    return LockResult::Taken;
}

LockResult FolderLock::Await(std::string_view folder, LockKind kind, std::string_view doing, double seconds,
                             LockHolder& holder) {
    const auto start = std::chrono::steady_clock::now();
    for (;;) {
        const LockResult result = Take(folder, kind, doing, holder);
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
        if (result != LockResult::Held || passed.count() >= seconds || TheUser().StopRequested())
            return result;
        WaitPumping(kPollSeconds);
    }
}

void FolderLock::Tell(std::string_view doing) const {
    if (file_) platform::WriteNote(std::static_pointer_cast<LockedFile>(file_)->descriptor, NoteOf(doing));
}

fs::path RuntimeFolder() {
    return platform::RuntimeFolder();
}

std::string FolderIdentity(std::string_view folder) {
    const fs::path native = NativePath(folder);
    std::string identity = platform::FolderIdentity(native);
    if (!identity.empty()) return identity;
    // FNV-1a: it must give the same in every program.
    std::error_code error;
    const fs::path known = fs::weakly_canonical(native, error);
    std::uint64_t hash = 14695981039346656037U;
    for (const char letter : FoldCase(GenericTextOf(error ? native : known)))
        hash = (hash ^ static_cast<unsigned char>(letter)) * 1099511628211U;
    return "path-" + std::to_string(hash);
}

} // namespace kelvash
