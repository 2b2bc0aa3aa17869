// Parts of the open dialog that its procedures share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "intake/new_level.h"

namespace kelvash::intake {

bool ContainsNoCase(const std::vector<std::string>& texts, std::string_view text);

// The name of the selected document; empty for "< NONE >".
std::string MoreInfoName(const NewLevel& level);
// Selects a document of the list; "< NONE >" for a name that isn't there.
void SelectMoreInfo(NewLevel& level, std::string_view name);

// Shows a text in Label_Info.
void ShowInfo(const std::string& text);

// Unpacks a zip into a folder or copies any other file there. A zip goes straight into the target, or through
// \_temp_zip, from where its files are copied flat.
enum class Through { Direct, TempFolder };
enum class Arrival { Whole, Failed, Stopped };
[[nodiscard]] Arrival AddFileOrZip(const std::string& source, const std::string& target, Through through);

} // namespace kelvash::intake
