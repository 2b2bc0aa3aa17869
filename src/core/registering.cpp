// The program's entries in the desktop and the registry, and the reset of all state.
#include "companion/game.h"
#include "companion/settings.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/registration.h"
#include "foundation/text.h"

namespace kelvash::core {

namespace {

// `name` is the key's own, under which Windows looks a program up, however its file is called here.
void RegisterAppPath(MessageId name, const std::string& program) {
    const std::string key = LoadMessage(MessageId::kAppPathsKey, {}) + LoadMessage(name, {});
    if (!program.empty() && ReadRegistryValue(key) != program)
        WriteRegistryValues(key, program, LoadMessage(MessageId::kAppPathsFolderValue, {}),
                            FolderOf(program));
}

} // namespace

bool RegisterArchiveType() {
    return RegisterFileType(LoadMessage(MessageId::kRegisteredExtension, {}),
                            LoadMessage(MessageId::kFileTypeDescription, {}),
                            AppFolder() + LoadMessage(MessageId::kIconName, {}), ProgramPath());
}

bool CreateProgramShortcut() {
    return CreateShortcut(
        SpecialFolderId::Programs, FolderOf(ProgramPath()), ProgramPath(),
        LoadMessage(MessageId::kProgramCaption, {}) + LoadMessage(MessageId::kProgramVersion, {}), {});
}

void RegisterAppPaths() {
    RegisterAppPath(MessageId::kAppPathsProgram, ProgramPath());
    const std::string editor = TrleFolder() + LoadMessage(MessageId::kRoomEditorProgram, {});
    if (FileExists(editor)) RegisterAppPath(MessageId::kAppPathsRoomEditor, editor);
}

void ResetProgramState() {
    archive = ArchiveState();
    level_list = LevelList();
    profile = ProfileRecord();
    session = SessionState();
    ResetProfileFile();
    ResetChanges();
    companion::game = companion::GameState();
    companion::joystick_rest = companion::JoystickRest();
    AllowRegistration(true);
    ResetMessages();
    ResetDrives();
}

} // namespace kelvash::core
