#include "foundation/registration.h"

#include "foundation/native_text.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/state.h"
#include "foundation/text.h"

namespace kelvash {

namespace {

struct Registration {
    bool Allowed = true;
};
constinit bool& may_register = State<Registration>::Get().Allowed;

} // namespace

void AllowRegistration(bool allowed) {
    may_register = allowed;
}

bool MayRegister() {
    return may_register;
}

bool RegisterFileType(std::string_view extension, std::string_view description, std::string_view icon,
                      std::string_view program) {
    return !may_register || platform::RegisterFileType(extension, description, icon, program);
}

bool CreateShortcut(SpecialFolderId where, std::string_view target_folder, std::string_view target,
                    std::string_view caption, std::string_view arguments) {
    if (!may_register) return true;
    std::filesystem::path folder = platform::SpecialFolder(where);
    if (folder.empty() || !StaysInside("\\" + std::string(caption))) return false;
    for (const std::string& name : Split(FolderOf(caption), '\\'))
        folder /= NativeFromText(SafeFileName(name));
    const bool whole = target.find(':') != std::string_view::npos;
    const std::string path =
        whole ? std::string(target) : std::string(target_folder) + "\\" + std::string(target);
    return platform::CreateShortcut(folder, NativePath(target_folder), NativePath(path),
                                    SafeFileName(FileNameOf(caption)), arguments);
}

std::string ReadRegistryValue(std::string_view key) {
    return platform::ReadRegistryValue(key);
}

bool WriteRegistryValues(std::string_view key, std::string_view default_value, std::string_view name,
                         std::string_view value) {
    return !may_register || platform::WriteRegistryValues(key, default_value, name, value);
}

} // namespace kelvash
