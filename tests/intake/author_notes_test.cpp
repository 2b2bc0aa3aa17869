#include "intake/author_notes.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "support/core_home.h"

namespace kelvash::intake {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using namespace std::string_literals;

class AuthorNotesTest : public test::CoreHome {
  protected:
    AuthorNotesTest() {
        AddRecord(1, "City");
        core::archive.Table.Edit(1)->Author = "Ann ";
        core::archive.Table.Edit(1)->Emails = "ann@a.org\0ann@b.org"s;
        core::archive.Table.Edit(1)->Sites = "http://a.org";
        core::archive.Table.Edit(1)->AuthorNote = "Play on";
    }
    static const core::LevelRecord& Record() { return core::archive.Table[1]; }
    AuthorNotes Begun() const { return BeginAuthorNotes(1); }
};

TEST_F(AuthorNotesTest, ShowsTheListsItemByItem) {
    const AuthorNotes notes = Begun();
    EXPECT_EQ(notes.Name, "Ann");
    EXPECT_THAT(notes.Emails, ElementsAre("ann@a.org", "ann@b.org"));
    EXPECT_THAT(notes.Sites, ElementsAre("http://a.org"));
    EXPECT_EQ(notes.Note, "Play on");
}

TEST_F(AuthorNotesTest, AnEmptyFieldHasNoItems) {
    core::archive.Table.Edit(1)->Emails.clear();
    EXPECT_THAT(Begun().Emails, IsEmpty());
}

TEST_F(AuthorNotesTest, AddsWhatIsTyped) {
    AuthorNotes notes = Begun();
    user.WillAnswer("Insert new email address", " new@c.org ");
    user.WillAnswer("Insert new url address", "http://c.org");
    EXPECT_TRUE(AddEmail(notes));
    EXPECT_TRUE(AddSite(notes));
    EXPECT_THAT(notes.Emails, ElementsAre("ann@a.org", "ann@b.org", "new@c.org"));
    EXPECT_THAT(notes.Sites, ElementsAre("http://a.org", "http://c.org"));
}

TEST_F(AuthorNotesTest, AnEmptyTextAddsNothing) {
    AuthorNotes notes = Begun();
    user.WillAnswer("Insert new email address", "  ");
    EXPECT_FALSE(AddEmail(notes));
    EXPECT_EQ(notes.Emails.size(), 2U);
}

TEST_F(AuthorNotesTest, ChangesAndDeletesTheItem) {
    AuthorNotes notes = Begun();
    user.WillAnswer("Change current email address", "second@b.org");
    user.WillAnswer("Change current url address", "http://z.org");
    EXPECT_TRUE(ChangeEmail(notes, 1));
    EXPECT_TRUE(ChangeSite(notes, 0));
    EXPECT_TRUE(DeleteEmail(notes, 0));
    EXPECT_THAT(notes.Emails, ElementsAre("second@b.org"));
    EXPECT_THAT(notes.Sites, ElementsAre("http://z.org"));
    EXPECT_TRUE(DeleteSite(notes, 0));
    EXPECT_THAT(notes.Sites, IsEmpty());
}

TEST_F(AuthorNotesTest, TellsThatNothingIsSelected) {
    AuthorNotes notes = Begun();
    EXPECT_FALSE(ChangeEmail(notes, -1));
    EXPECT_FALSE(ChangeSite(notes, -1));
    EXPECT_FALSE(DeleteEmail(notes, -1));
    EXPECT_FALSE(DeleteSite(notes, -1));
    SendMail(notes, -1);
    GoSite(notes, -1);
    const std::string item = "exclamation: No selected item";
    EXPECT_THAT(user.Told(), ElementsAre(item, item, item, item, item, "exclamation: No selected site"));
}

TEST_F(AuthorNotesTest, StoresTheListsWithNulBetween) {
    AuthorNotes notes = Begun();
    notes.Name = "Bob";
    notes.Emails = {"a", "b"};
    notes.Sites = {"c", "d", "e"};
    notes.Note = "Thanks";
    EXPECT_TRUE(StoreAuthorNotes(notes));
    EXPECT_EQ(Record().Author, "Bob");
    EXPECT_EQ(Record().Emails, "a\0b"s);
    EXPECT_EQ(Record().Sites, "c\0d\0e"s);
    EXPECT_EQ(Record().AuthorNote, "Thanks");
}

TEST_F(AuthorNotesTest, TakesTextsOneByteBelowTheLimit) {
    AuthorNotes notes = Begun();
    notes.Name = std::string(79, 'n');
    notes.Emails = {std::string(127, 'e'), std::string(127, 'e')}; // 255 with the separator
    notes.Sites = {std::string(255, 's')};
    notes.Note = std::string(255, 't');
    EXPECT_TRUE(StoreAuthorNotes(notes));
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_EQ(Record().Author.size(), 79U);
}

TEST_F(AuthorNotesTest, CountsCharactersOfTheAnsiCodePageNotBytesOfUtf8) {
    user.MayBeTold("Game designer name too long");
    AuthorNotes notes = Begun();
    notes.Name.clear();
    for (int i = 0; i < 79; ++i)
        notes.Name += "\u00e9";
    EXPECT_TRUE(StoreAuthorNotes(notes));
    notes.Name += "\u00e9";
    EXPECT_FALSE(StoreAuthorNotes(notes));
}

struct TooLong {
    const char* name;
    void (*lengthen)(AuthorNotes&);
    const char* told;
};
class AuthorNotesTooLong : public AuthorNotesTest, public testing::WithParamInterface<TooLong> {};

TEST_P(AuthorNotesTooLong, IsRefusedAndNothingChanges) {
    AuthorNotes notes = Begun();
    notes.Note = "changed";
    GetParam().lengthen(notes);
    EXPECT_FALSE(StoreAuthorNotes(notes));
    EXPECT_THAT(user.Told(), ElementsAre("critical: "s + GetParam().told));
    EXPECT_EQ(Record().AuthorNote, "Play on");
    EXPECT_EQ(Record().Emails, "ann@a.org\0ann@b.org"s);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, AuthorNotesTooLong,
    testing::Values(TooLong{"Emails",
                            [](AuthorNotes& notes) {
                                notes.Emails = {std::string(128, 'e'), std::string(127, 'e')};
                            },
                            "Emails field too long. Remove any email address"},
                    TooLong{"Sites", [](AuthorNotes& notes) { notes.Sites = {std::string(256, 's')}; },
                            "Sites field too long. Remove any url address"},
                    TooLong{"Name", [](AuthorNotes& notes) { notes.Name = std::string(80, 'n'); },
                            "Game designer name too long"},
                    TooLong{"Note", [](AuthorNotes& notes) { notes.Note = std::string(256, 't'); },
                            "Author's note too long"}),
    [](const testing::TestParamInfo<TooLong>& field) { return std::string(field.param.name); });

TEST_F(AuthorNotesTest, RefusesCharactersThatTheRecordCannotHold) {
    AuthorNotes notes = Begun();
    notes.Name = "\xC5\x81uk";
    EXPECT_FALSE(StoreAuthorNotes(notes));
    EXPECT_EQ(Record().Author, "Ann ");
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: This text has characters that the files of Kelvash can not hold (only "
                            "those of Windows-1252): \xC5\x81uk"));
}

TEST_F(AuthorNotesTest, OnlyAddressesAreOpenedAndOnlyAfterAYes) {
    AuthorNotes notes = Begun();
    notes.Sites = {"C:\\trle\\tomb4.exe", "file:///etc/passwd", "www.x.org"};
    notes.Emails = {"a@b.c?attach=/etc/passwd", "ann@a.org"};
    GoSite(notes, 0);
    GoSite(notes, 1);
    SendMail(notes, 0);
    const std::string refused =
        "critical: Only web sites (http, https) and email addresses can be opened, and this is none: ";
    EXPECT_THAT(user.Told(), ElementsAre(refused + "C:\\trle\\tomb4.exe", refused + "file:///etc/passwd",
                                         refused + "mailto:a@b.c?attach=/etc/passwd"));
    user.WillAnswer("Do you want to open this address?\r\nhttp://www.x.org", "no");
    user.WillAnswer("Do you want to open this address?\r\nmailto:ann@a.org", "no");
    GoSite(notes, 2);
    SendMail(notes, 1);
    EXPECT_EQ(user.Asked().size(), 2U);
}

} // namespace
} // namespace kelvash::intake
