// Levels that bring media, and what has made way for them.
#pragma once

#include "support/swap_home.h"
#include "swap/install.h"

namespace kelvash::swap {

// A media configuration with one event that uses a file in one of its fields.
inline std::string Config(std::size_t field, std::uint32_t flag, const std::string& name) {
    std::string config(20 + 1356, ' ');
    config.replace(0, 4, std::string("\1\0\0\0", 4));
    config.replace(20 + field, name.size(), name);
    for (std::size_t i = 0; i < 4; ++i)
        config[20 + 266 + i] = static_cast<char>(flag >> (8 * i) & 0xFF);
    return config;
}

inline std::string Title(const std::string& name) {
    return Config(530, 0x80, name);
}

class Overwriting : public test::SwapHome {
  protected:
    // Bytes of all files of that name below kept_files, one behind the other.
    std::string Kept(const std::string& name) const {
        std::string bytes;
        if (std::filesystem::is_directory(home / "kept_files"))
            for (const std::filesystem::directory_entry& entry :
                 std::filesystem::recursive_directory_iterator(home / "kept_files"))
                if (entry.is_regular_file() && entry.path().filename() == name)
                    bytes += test::BytesOf(entry.path());
        return bytes;
    }
    // Nothing can be kept as long as a file has the folder's name.
    void BlockKeeping() { test::MakeFile(home / "kept_files", "in the way"); }
    void ForgetRecord() {
        for (const std::string& name : NamesIn(home))
            if (name.ends_with(".rec")) std::filesystem::remove(home / name);
    }
    static std::string Failed(const std::string& files) {
        return "critical: These files stay as they are, because the backup doesn't hold them and they can't "
               "be kept elsewhere:\r\n" +
               files;
    }
};

} // namespace kelvash::swap
