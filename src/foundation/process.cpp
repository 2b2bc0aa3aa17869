#include "foundation/process.h"

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/native_text.h"
#include "foundation/platform/platform.h"
#include "foundation/strangers_files.h"

namespace kelvash {

namespace {

bool IsPathText(std::string_view text) {
    return text.size() >= 2 && text[1] == ':';
}

} // namespace

std::int64_t RunNoWait(std::string_view program, const Arguments& arguments, Process& process,
                       Window window) {
    return RunFull(program, arguments, window, process, false) ? process.id : -1;
}

bool RunFull(std::string_view program, const Arguments& arguments, Window window, Process& process,
             bool suspended) {
    process = {};
    const std::filesystem::path native = NativePath(program);
    const platform::SpawnRequest request{native, arguments, native.parent_path(), window, suspended};
    return FileExists(program) &&
           platform::Spawn(request, process, nullptr) == platform::SpawnResult::Started;
}

void ResumeProcess(const Process& process) {
    platform::Resume(process);
}

bool WaitForProcess(const Process& process, double seconds, int* exit_code) {
    return platform::WaitFor(process, seconds, exit_code);
}

void KillProcess(const Process& process) {
    platform::Kill(process);
}

bool TakeProcess(std::int64_t id, Process& process) {
    process = {};
    return id > 0 && platform::Take(id, process);
}

void ReleaseProcess(Process& process) {
    platform::Release(process);
}

bool HoldsOpen(std::int64_t process_id, const std::vector<std::string>& files) {
    return platform::HoldsOpen(process_id, files);
}

std::int64_t FindProcessOf(std::string_view program) {
    return platform::FindProcessOf(NativePath(program));
}

bool OpenDocument(std::string_view document, std::string_view verb, Window window, std::string_view folder) {
    if (!IsPathText(document)) {
        const std::optional<std::string> address = OpenableAddress(document);
        return address && platform::OpenWithDesktop(*address, verb, window, {});
    }
    if (!FileExists(document) && !FolderExists(document)) return false;
    const std::filesystem::path native = NativePath(document);
    const std::filesystem::path place = folder.empty() ? native.parent_path() : NativePath(folder);
    return platform::OpenWithDesktop(TextOfNative(native), verb, window, place);
}

} // namespace kelvash
