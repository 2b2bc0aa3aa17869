// The two classes over zip files. zip_module.h has the operations that the program uses.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kelvash::zip {

// What a job tells while it runs: one line an entry ("  inflating: name", "  adding: name"), and a look at
// the user's wish after each block, within an entry too. Either answers true to stop.
struct ZipWatcher {
    std::function<bool(const std::string& line)> line;
    std::function<bool()> poll;
    // Told how much of all bytes is done, from 0 to 1, within an entry too.
    std::function<void(double done)> share = nullptr;
};

// Makes a zip file or adds to one. Encryption and system files, which the program never asks for, are left
// out of its properties.
class ZipClass {
  public:
    std::string ZipFileName;     // path text
    std::string RootDirectory;   // names in the zip are relative to it
    bool RecurseFolders = false; // a folder that is added brings its tree
    bool UpdatingZip = false;    // entries are added to the zip that exists, or replace those of their names

    // How many files are to go in.
    std::int64_t ZipFileCount() const { return static_cast<std::int64_t>(files_.size()); }
    // A file or a folder's files, by path text; folders have no entries of their own.
    void AddFile(const std::string& path);
    void RemoveFile(const std::string& path);
    // False, with the old zip untouched, after an error or a stop, for a zip that is read-only, or if there
    // is nothing to put in. A zip among the files doesn't go into itself.
    [[nodiscard]] bool MakeZipFile(const ZipWatcher& watcher);
    // The last line of a job, or why it failed.
    const std::string& GetLastMessage() const { return message_; }

  private:
    std::vector<std::string> files_;
    std::string message_;
};

// Extracts a zip file. Properties of a console's output have no meaning here and are left out.
class UnzipClass {
  public:
    std::string ZipFileName;              // path text
    std::string ExtractDir;               // path text of a folder that exists
    std::vector<std::string> ExtractList; // masks of names with "\" between folders; empty: everything
    bool CaseSensitive = false;           // of these masks
    bool HonorDirectories = true;         // folders are made, empty ones too; off: all files flat
    bool OverWriteFiles = true;           // off: a file that exists stays
    bool PromptOverwrite = false;         // a file that exists is asked about
    bool ExtractOnlyNewer = false;        // a file that exists and isn't older stays
    bool SpaceToUnderScore = false;       // in the names of files
    bool TestZip = false;                 // everything is read, nothing written

    // True if all that may be extracted was. The user is asked for the password of an encrypted zip until it
    // is right. An archive without entries is a success without a line.
    [[nodiscard]] bool UnZip(const ZipWatcher& watcher);
    const std::string& GetLastMessage() const { return message_; }

    // What the job did: full paths of the files written; names of entries that were refused, that met one of
    // their own name in this zip, that have a longer name than a file can, and that failed, with the reason.
    std::vector<std::string> Written;
    std::vector<std::string> Refused;
    std::vector<std::string> Twice;
    std::vector<std::string> TooLong;
    std::vector<std::pair<std::string, std::string>> Failed;
    bool Opened = false;
    bool Stopped = false;
    bool NoPassword = false; // it stopped as the user gave no password, or no right one

  private:
    std::string message_;
};

} // namespace kelvash::zip
