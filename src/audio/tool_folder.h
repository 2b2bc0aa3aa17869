// The private folder in which an outside program works, below the application's folder.
#pragma once

#include <string>

#include "foundation/lock.h"

namespace kelvash::audio {

// Made for a scope. Another process has another one; what a killed process has left is removed first.
class ToolFolder {
  public:
    ToolFolder();
    ~ToolFolder();
    ToolFolder(const ToolFolder&) = delete;
    ToolFolder& operator=(const ToolFolder&) = delete;

    // Empty if none could be had.
    const std::string& Path() const { return path_; }
    // Gives a file a second name in it, or copies it there. False if that can't be.
    [[nodiscard]] bool TakeIn(const std::string& file, const std::string& name) const;

  private:
    std::string path_;
    FolderLock lock_;
};

} // namespace kelvash::audio
