// A mail program for tests: a script on PATH, before all others, under the name of the desktop's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/foundation_home.h"

namespace kelvash::test {

class StandInMailer {
  public:
    // In a folder of its own; there is no such program until Make.
    explicit StandInMailer(std::filesystem::path root)
        : root_(std::move(root)), old_path_(std::getenv("PATH")) {
        SetEnvironment("PATH", (root_ / "bin").string() + ":" + old_path_);
    }
    ~StandInMailer() { SetEnvironment("PATH", old_path_); }
    StandInMailer(const StandInMailer&) = delete;
    StandInMailer& operator=(const StandInMailer&) = delete;

    // Writes down its words, one a line, and ends like this.
    void Make(int exit_code) const {
        const std::filesystem::path program = root_ / "bin/xdg-email";
        MakeFile(program, "#!/bin/sh\nfor word; do printf '%s\\n' \"$word\"; done > '" +
                              (root_ / "words").string() + "'\nexit " + std::to_string(exit_code) + "\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }
    std::string Words() const { return BytesOf(root_ / "words"); }

  private:
    std::filesystem::path root_;
    std::string old_path_;
};

} // namespace kelvash::test
