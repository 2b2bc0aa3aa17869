#include "breaking/hostile_names.h"

#include <algorithm>
#include <string_view>

#include "support/record_bytes.h"
#include "support/swap_world.h"

namespace kelvash::test {

namespace {

using Names = std::vector<HostileName>;

void AddClimbing(const std::string& target, Names& names) {
    std::string up;
    for (int i = 0; i < 16; ++i)
        up += "../";
    std::string back = up + target.substr(1);
    names.push_back({"climbs to a file of the user", back});
    std::replace(back.begin(), back.end(), '/', '\\');
    names.push_back({"climbs with back-slashes to a file of the user", back});
    for (const char* name :
         {"../escape.wav", "../../escape.wav", "../../../escape.wav", "..\\escape.wav", "..\\..\\escape.wav",
          "a/../../escape.wav", "a\\..\\..\\escape.wav", "./../escape.wav", "a/b/../../../escape.wav",
          "../FILES/../escape.wav", ".. /escape.wav", "..", "../", "....//escape.wav",
          "../../LEVEL_0001/FILES/escape.wav"})
        names.push_back({std::string("climbs: ") + name, name});
    for (const char* name : {"..;/escape.wav", "%2e%2e%2fescape.wav",
                             "\xC0\xAE\xC0\xAE\xC0\xAF"
                             "escape.wav"})
        names.push_back({std::string("climbs in code: ") + name, name});
}

void AddAbsolute(const std::string& target, Names& names) {
    names.push_back({"absolute", target});
    names.push_back({"absolute with two slashes", "/" + target});
    names.push_back({"on drive Z:", "Z:" + target});
    std::string dos = "Z:" + target;
    std::replace(dos.begin(), dos.end(), '/', '\\');
    names.push_back({"on drive Z: with back-slashes", dos});
    for (const char* name :
         {"\\escape.wav", "/escape.wav", "//server/share/escape.wav", "\\\\server\\share\\escape.wav",
          "\\\\?\\C:\\Other\\savegame.0", "\\\\.\\C:\\Other\\savegame.0", "C:\\Other\\savegame.0",
          "C:/Other/savegame.0", "c:escape.wav", "C:\\escape.wav", "x.wav:stream", "x.wav::$DATA"})
        names.push_back({std::string("rooted: ") + name, name});
}

void AddReserved(Names& names) {
    for (const char* name :
         {"CON", "con.wav", "AUX.tr4", "nul", "NUL.wav", "prn.dat", "COM1.wav", "com9.tr4", "LPT1.wav",
          "lpt9.dat", "CONIN$", "CONOUT$.wav", "con .wav", "aux.x.wav", "COM\xC2\xB9.wav", "a/CON/x.wav"})
        names.push_back({std::string("device: ") + name, name});
    for (const char* name : {"x.wav.", "x.wav ", "x.wav...", "x.tr4 .", "...", " ", ". .", "dir./x.wav",
                             "dir /x.wav", "x.wav\xC2\xA0"})
        names.push_back({std::string("ends in dots or blanks: '") + name + "'", name});
}

void AddControls(Names& names) {
    names.push_back({"NUL inside", Literal("x\0y.wav")});
    names.push_back({"NUL before another extension", Literal("x.wav\0.txt")});
    names.push_back({"only a NUL", Literal("\0")});
    names.push_back({"line feed", "x\ny.wav"});
    names.push_back({"line end", "x\r\ny.wav"});
    names.push_back({"tabulator", "x\ty.wav"});
    names.push_back({"escape sequence", "\x1B[31mred\x1B[2J.wav"});
    names.push_back({"sets the window's title", "\x1B]0;owned\x07.wav"});
    names.push_back({"bell and back-space", "\x07\x08\x08.wav"});
    names.push_back({"delete", "x\x7F.wav"});
    names.push_back({"C1 sequence",
                     "x\xC2\x9B"
                     "31m.wav"});
}

void AddLong(Names& names) {
    for (const std::size_t length : {252U, 256U, 300U, 1000U, 65531U})
        names.push_back({std::to_string(length) + " letters", std::string(length - 4, 'l') + ".wav"});
    std::string wide;
    for (int i = 0; i < 150; ++i)
        wide += "\xC3\xA9";
    names.push_back({"150 letters of two bytes", wide + ".wav"});
    for (const int depth : {40, 2000}) {
        std::string deep;
        for (int i = 0; i < depth; ++i)
            deep += "d/";
        names.push_back({std::to_string(depth) + " folders deep", deep + "x.wav"});
    }
    names.push_back({"a folder of 300 letters", std::string(300, 'f') + "/x.wav"});
}

void AddUnicode(Names& names) {
    names.push_back({"composed", "caf\xC3\xA9.wav"});
    names.push_back({"decomposed", "cafe\xCC\x81.wav"});
    names.push_back({"Cyrillic look-alike", "m\xD0\xB0ze.wav"});
    names.push_back({"full-width slash",
                     "..\xEF\xBC\x8F"
                     "escape.wav"});
    names.push_back({"full-width back-slash",
                     "..\xEF\xBC\xBC"
                     "escape.wav"});
    names.push_back({"division slash",
                     "..\xE2\x88\x95"
                     "escape.wav"});
    names.push_back({"one-dot leaders", "\xE2\x80\xA4\xE2\x80\xA4/escape.wav"});
    names.push_back({"right-to-left", "x\xE2\x80\xAEvaw.exe.wav"});
    names.push_back({"no width", "x\xE2\x80\x8B.wav"});
    names.push_back({"byte order mark", "\xEF\xBB\xBFx.wav"});
    names.push_back({"outside Windows-1252",
                     "\xC5\x81\xC3\xB3"
                     "d\xC5\xBA.wav"});
    names.push_back({"Japanese", "\xE6\x97\xA5\xE6\x9C\xAC.tr4"});
    names.push_back({"emoji", "\xF0\x9F\x90\xB8.wav"});
    names.push_back({"a surrogate", "x\xED\xA0\x80.wav"});
    names.push_back({"no UTF-8", "\xFF\xFE.wav"});
    names.push_back({"half a letter", "x\xE2\x82.wav"});
}

void AddSigns(Names& names) {
    for (const char* name :
         {"#a.tr4", "Song #1.wav", "a#COPIED_FILES=\\tomb4.exe#.tr4", "a|b.wav", "a|\\tomb4.exe.wav",
          "a?.wav", "a*.wav", "a<b>.wav", "\"a\".wav", "-rf.wav", "$(touch escape).wav", "`touch escape`.wav",
          "~.wav", "%s%n.wav", "&lt;b&gt;.wav", "'.wav", ";.wav", "a=b.wav", "{0}.wav"})
        names.push_back({std::string("signs: ") + name, name});
    for (const char* name : {"MAZE.TR4", "Maze.Tr4", "maze.tr4", "SCRIPT.dat"})
        names.push_back({std::string("twin: ") + name, name, true});
    for (const char* name : {"kelvash.tmp", "Kelvash.txt", "KELVASH.PRF", "tr4.inf", "drives.txt",
                             "messages.txt", "desktop.ini", ".hidden", "savegame.0", "tomb4.exe", "x.lnk"})
        names.push_back({std::string("taken: ") + name, name, false});
}

bool IsDeviceName(const std::string& lower) {
    std::string base = lower.substr(0, lower.find('.'));
    base.erase(base.find_last_not_of(' ') + 1);
    for (const char* device : {"con", "prn", "aux", "nul", "conin$", "conout$"})
        if (base == device) return true;
    return base.size() == 4 && (base.starts_with("com") || base.starts_with("lpt")) && base[3] >= '1' &&
           base[3] <= '9';
}

bool HasControl(const std::string& name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto byte = static_cast<unsigned char>(name[i]);
        if (byte < 0x20 || byte == 0x7F) return true;
        const bool c1 = byte == 0xC2 && i + 1 < name.size() && static_cast<unsigned char>(name[i + 1]) < 0xA0;
        if (c1) return true;
    }
    return false;
}

} // namespace

std::vector<HostileName> HostileNames(const std::filesystem::path& outside) {
    Names names;
    AddClimbing((outside / "target.txt").string(), names);
    AddAbsolute((outside / "target.txt").string(), names);
    AddReserved(names);
    AddControls(names);
    AddLong(names);
    AddUnicode(names);
    AddSigns(names);
    for (HostileName& name : names) // they are printed
        std::replace_if(
            name.label.begin(), name.label.end(), [](char c) { return c < ' ' || c == 0x7F; }, '.');
    return names;
}

std::vector<HostileName> HostileFieldNames(const std::filesystem::path& outside) {
    constexpr std::size_t kLongest = 250;
    Names names = HostileNames(outside);
    std::erase_if(names, [](const HostileName& name) {
        return name.name.find('\0') != std::string::npos || name.name.size() > kLongest;
    });
    return names;
}

std::string FaultOfName(const std::string& name) {
    constexpr std::size_t kLongest = 255;
    if (HasControl(name)) return "holds a control character";
    // Other signs that Windows doesn't take lead nowhere: there the file can't be made, and that is told.
    if (name.find_first_of("/\\:") != std::string::npos) return "holds a separator";
    if (name.ends_with(".") || name.ends_with(" ")) return "ends in a dot or blank";
    if (IsDeviceName(Lower(name))) return "is a device";
    if (name.size() > kLongest) return "is too long";
    return {};
}

} // namespace kelvash::test
