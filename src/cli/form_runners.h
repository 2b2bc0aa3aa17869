// The forms that the logic opens, without a window: a path or the name of a button ends them, which is typed
// or stands among the answers. A form whose fields are a command's own options is filled in by the command,
// in a FormScope.
#pragma once

namespace kelvash::cli {

class CliUser;

// The buttons by whose names answers and events know the end of a form.
inline constexpr const char* kOkButton = "Pul_Ok";
inline constexpr const char* kCancelButton = "Pul_Cancel";
inline constexpr const char* kNewArchiveButton = "Pul_New";
inline constexpr const char* kLoadArchiveButton = "Pul_Load";

// The user must live as long as its runners may be called.
void AddFormRunners(CliUser& user);

} // namespace kelvash::cli
