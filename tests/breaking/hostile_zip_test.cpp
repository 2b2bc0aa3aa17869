// Packages whose entries are named, linked or sized by somebody who means no good.
#include "breaking/hostile_home.h"
#include "breaking/hostile_names.h"
#include "breaking/packages.h"
#include "support/record_bytes.h"

namespace kelvash::test {
namespace {

class HostileZip : public HostileHome {
  protected:
    // A package that must be refused, or come in with everything else whole.
    void AddWith(const std::string& label, const std::vector<ZipBytes>& entries,
                 Answers answers = Answers::Yes) {
        SCOPED_TRACE(label);
        Begin();
        const Told told = Add(PackageWith(entries), answers);
        if (const int code = CodeOf(told); code > 0) WalkRoad(code);
    }
};

TEST_F(HostileZip, NamesLeadNowhere) {
    for (const HostileName& name : Sampled(HostileNames(outside), 9)) {
        SCOPED_TRACE(name.label);
        Begin();
        const std::string bytes = "hostile " + name.label;
        const Told told = Add(PackageWith({MakeEntry(name.name, bytes)}));
        const int code = CodeOf(told);
        if (code > 0 && name.told) {
            EXPECT_TRUE(Holds(bytes) || told.Spoke()) << "left out without a word\n" << told.Story();
        }
        if (code > 0) WalkRoad(code);
    }
    EXPECT_GE(figures.Of("cases"), LongForm() ? 100 : 10);
    EXPECT_GT(figures.Of("roads"), LongForm() ? 20 : 3);
}

TEST_F(HostileZip, OneBadNameDoesNotCostTheLevel) {
    int number = 0;
    for (const HostileName& name : HostileNames(outside)) {
        if (!name.label.ends_with("letters") && !name.label.starts_with("signs")) continue;
        if (!LongForm() && number++ % 4 != 0) continue;
        SCOPED_TRACE(name.label);
        Begin();
        const Told told = Add(PackageWith({MakeEntry(name.name, "hostile")}));
        EXPECT_GT(CodeOf(told), 0) << told.Story();
    }
    EXPECT_GT(figures.Of("cases"), LongForm() ? 20 : 4);
}

// A link of a Unix archiver: the entry's content is where it points.
ZipBytes Link(const std::string& name, const std::string& target) {
    ZipBytes entry = MakeEntry(name, target);
    entry.made_by = 0x0314;
    entry.attributes = 0120777U << 16;
    return entry;
}

TEST_F(HostileZip, LinksAreNotFollowed) {
    const std::string secret = (outside / "secret.wav").string();
    const std::string folder = outside.string();
    AddWith("a link to a secret", {Link("leak.wav", secret)});
    EXPECT_FALSE(Holds("outside secret.wav"));
    AddWith("a link to a folder, and a file through it",
            {Link("out", folder), MakeEntry("out/target.txt", "hostile")});
    AddWith("a link in place of a file that comes later",
            {Link("x.wav", secret), MakeEntry("x.wav", "hostile")});
    AddWith("a link that climbs", {Link("x.wav", "../../../../../outside/secret.wav")});
    AddWith("a link to itself", {Link("x.wav", "x.wav")});
    AddWith("a link to the folder above", {Link("up", ".."), MakeEntry("up/escape.wav", "hostile")});
    AddWith("a link named like the script", {Link("script.dat", secret)});
    EXPECT_FALSE(Holds("outside secret.wav"));
    ZipBytes device = MakeEntry("device.wav", "");
    device.made_by = 0x0314;
    device.attributes = 0020666U << 16;
    AddWith("a device", {device});
    device.attributes = 0010666U << 16;
    AddWith("a named pipe", {device});
    device.attributes = 0104777U << 16;
    AddWith("a program that runs as its owner", {device});
    EXPECT_EQ(figures.Of("cases"), 10);
}

TEST_F(HostileZip, LyingHeadsAreToldOrRefused) {
    const auto entry = [](const std::function<void(ZipBytes&)>& lie) {
        ZipBytes bytes = MakeEntry("x.wav", "hostile content");
        lie(bytes);
        return bytes;
    };
    const std::vector<std::pair<std::string, std::function<void(ZipBytes&)>>> lies = {
        {"smaller than it is", [](ZipBytes& e) { e.declared = 3; }},
        {"larger than it is", [](ZipBytes& e) { e.declared = 4000; }},
        {"4 GB", [](ZipBytes& e) { e.declared = 0xFFFFFFFE; }},
        {"size in an extra field that is missing", [](ZipBytes& e) { e.declared = 0xFFFFFFFF; }},
        {"wrong checksum", [](ZipBytes& e) { e.crc ^= 1; }},
        {"no deflated data", [](ZipBytes& e) { e.method = 8; }},
        {"an unknown method", [](ZipBytes& e) { e.method = 77; }},
        {"AES without its field",
         [](ZipBytes& e) {
             e.method = 99;
             e.flags = 1;
         }},
        {"encrypted but plain", [](ZipBytes& e) { e.flags = 1; }},
        {"a descriptor that is missing", [](ZipBytes& e) { e.flags = 8; }},
        {"a broken extra field", [](ZipBytes& e) { e.extra = Literal("\x01\x00\xFF\xFFxyz"); }},
        {"another name in the extra field",
         [](ZipBytes& e) {
             e.extra = "up" + NumberBytes(5 + 17, 2) + "\x01" + "xxxx" + "../../../../ev.wav";
         }},
        {"patched data", [](ZipBytes& e) { e.flags = 32; }},
    };
    for (const auto& [label, lie] : Sampled(lies, 3)) {
        SCOPED_TRACE(label);
        Begin();
        const Told told = Add(PackageWith({entry(lie)}));
        EXPECT_TRUE(Holds("hostile content") || told.Spoke()) << told.Story();
    }
    EXPECT_EQ(figures.Of("cases"), static_cast<int>(Sampled(lies, 3).size()));
}

TEST_F(HostileZip, DamagedZipsAreRefusedWithAWord) {
    const std::string sound = PackageWith({MakeEntry("x.wav", std::string(3000, 'x'))});
    std::vector<std::pair<std::string, std::string>> damaged = {{"empty", ""},
                                                                {"no zip", "This is no zip."},
                                                                {"an empty zip", MakeZipBytes({})},
                                                                {"two zips", sound + sound}};
    for (const double part : {0.1, 0.3, 0.5, 0.8, 0.95, 0.99})
        damaged.emplace_back(
            "cut at " + std::to_string(part),
            sound.substr(0, static_cast<std::size_t>(part * static_cast<double>(sound.size()))));
    std::string flipped = sound;
    for (std::size_t i = sound.size() - 300; i < sound.size(); i += 17)
        flipped[i] = static_cast<char>(flipped[i] ^ 0x55);
    damaged.emplace_back("directory garbled", flipped);
    std::string many = sound;
    Put(many, many.size() - 12, "\xFF\xFF\xFF\xFF"); // both counts of entries
    damaged.emplace_back("65535 entries stated", many);
    for (const auto& [label, bytes] : Sampled(damaged, 4)) {
        SCOPED_TRACE(label);
        Begin();
        const Told told = Add(bytes);
        EXPECT_TRUE(told.status() == 0 || told.Spoke()) << told.Story();
    }
    EXPECT_EQ(figures.Of("cases"), static_cast<int>(Sampled(damaged, 4).size()));
}

class HostileBomb : public HostileHome {
  protected:
    // Nobody agrees to anything: so the user is told, and little is left on the disk.
    void AskedAbout(const std::string& label, const std::string& zip) {
        SCOPED_TRACE(label);
        Begin();
        const Told told = Add(zip, Answers::None);
        EXPECT_TRUE(told.Spoke()) << told.Story();
        std::uintmax_t bytes = 0;
        for (const auto& folder : {levels, tmp, home})
            for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
                if (entry.is_regular_file()) bytes += entry.file_size();
        EXPECT_LT(bytes, std::uintmax_t{64} << 20) << "left on the disk\n" << told.Story();
    }
};

TEST_F(HostileBomb, FlatOnesAreAskedAbout) {
    AskedAbout("one entry", PackageWith({ZerosEntry("x.wav", 3000)}));
    const ZipBytes part = ZerosEntry("x.wav", 80);
    std::vector<ZipBytes> parts;
    for (int i = 0; i < 40; ++i) {
        parts.push_back(part);
        parts.back().name = std::to_string(i) + ".wav";
    }
    AskedAbout("forty entries", PackageWith(parts));
    ZipBytes liar = ZerosEntry("x.wav", 3000);
    liar.declared = 1000;
    AskedAbout("an entry that states 1000 bytes", PackageWith({liar}));
}

TEST_F(HostileBomb, NestedOnesAreAskedAbout) {
    const std::string inner = MakeZipBytes({ZerosEntry("x.wav", 3000)});
    AskedAbout("a zip in a zip", PackageWith({MakeEntry("inner.zip", inner)}));
    std::string nested = inner;
    for (int i = 0; i < 12; ++i)
        nested = MakeZipBytes({MakeEntry("inner" + std::to_string(i) + ".zip", nested)});
    AskedAbout("twelve zips in each other", PackageWith({MakeEntry("nested.zip", nested)}));
    // Each level's zip twice: 2 to the 14th bombs at the bottom.
    std::string tree = MakeZipBytes({ZerosEntry("x.wav", 2)});
    for (int i = 0; i < 14; ++i)
        tree = MakeZipBytes({MakeEntry("a.zip", tree), MakeEntry("b.zip", tree)})
                   .substr(0, std::size_t{8} << 20);
    AskedAbout("a tree of zips", PackageWith({MakeEntry("tree.zip", tree)}));
}

TEST_F(HostileBomb, ManyEntriesComeToAnEnd) {
    Begin(); // twenty thousand entries
    std::vector<ZipBytes> many;
    for (int i = 0; i < 20000; ++i)
        many.push_back(MakeEntry(std::to_string(i) + ".wav", ""));
    MakeFile(package, PackageWith(many));
    Check({"add", package.string()}, May::AddLevel, Answers::Yes, 40);
    Begin(); // twenty thousand of one name
    for (ZipBytes& entry : many)
        entry.name = "same.wav";
    MakeFile(package, PackageWith(many));
    Check({"add", package.string()}, May::AddLevel, Answers::Yes, 40);
}

// 680 KB that unpack to 700 MB when the level is installed.
TEST_F(HostileBomb, APackedLevelIsNotUnpackedUnasked) {
    Begin(); // a .tr4.zl of 700 MB
    const Told told = Add(MakeZipBytes({MakeEntry("maze.tr4.zl", ZerosStream(700)),
                                        MakeEntry("script.dat", "s"), MakeEntry("english.dat", "e")}),
                          Answers::None);
    const int code = CodeOf(told);
    if (code == 0) return;
    const Told installed = Run({"install", std::to_string(code)});
    ExpectSane(installed);
    std::uintmax_t bytes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(trle / "data"))
        bytes = std::max(bytes, entry.file_size());
    EXPECT_LT(bytes, std::uintmax_t{64} << 20) << installed.Story();
    EXPECT_NE(installed.status(), 0) << installed.Story();
}

} // namespace
} // namespace kelvash::test
