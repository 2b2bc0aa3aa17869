// The program's entries in the desktop and the registry.
#include "program/registering.h"

#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/registration.h"
#include "foundation/text.h"
#include "program/fragments.h"
#include "program/messages.h"

namespace kelvash::program {

namespace {

// `name` is the key's own, under which Windows looks a program up, however its file is called here.
void RegisterAppPath(const Fragment& name, const std::string& program) {
    const std::string key = LoadFragment(fragment::kAppPathsKey) + LoadFragment(name);
    if (!program.empty() && ReadRegistryValue(key) != program)
        WriteRegistryValues(key, program, LoadFragment(fragment::kAppPathsFolderValue), FolderOf(program));
}

} // namespace

bool RegisterArchiveType() {
    return RegisterFileType(LoadFragment(fragment::kRegisteredExtension),
                            LoadMessage(msg::kFileTypeDescription),
                            AppFolder() + LoadFragment(fragment::kIconName), ProgramPath());
}

bool CreateProgramShortcut() {
    return CreateShortcut(SpecialFolderId::Programs, FolderOf(ProgramPath()), ProgramPath(),
                          LoadFragment(fragment::kProgramCaption) + LoadFragment(fragment::kProgramVersion),
                          {});
}

void RegisterAppPaths() {
    if (!MayRegister()) return; // the registry is a file of Wine's, long to read
    RegisterAppPath(fragment::kAppPathsProgram, ProgramPath());
    const std::string editor = core::TrleFolder() + LoadFragment(fragment::kRoomEditorProgram);
    if (FileExists(editor)) RegisterAppPath(fragment::kAppPathsRoomEditor, editor);
}

} // namespace kelvash::program
