// Reaching levels that lie on CDs. RequestCd itself is declared in core/ports.h, for those below.
#pragma once

#include <string>

namespace kelvash::cd {

// The form that asks for a disc and for the drive in which it lies.
struct CdDriveChoice {
    static constexpr const char* kForm = "Dialog_InsertCd";
    std::string Title;
    std::string Text;
    std::string Drive; // where it starts ("E:"); then the chosen one, empty for none
};

} // namespace kelvash::cd
