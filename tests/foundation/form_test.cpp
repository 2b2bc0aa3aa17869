#include "foundation/form.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include <string>

#include "foundation/user.h"
#include "support/scripted_user.h"

namespace kelvash {
namespace {

struct Colour {
    static constexpr const char* kForm = "Dialog_Colour";
    std::string Name;
};
struct Number {
    static constexpr const char* kForm = "Dialog_Number";
    int Value = 0;
};

TEST(Form, GoesToTheRunnerOfItsRecord) {
    test::ScriptedUser user;
    user.forms.Add<Colour>([](Colour& colour) {
        EXPECT_EQ(colour.Name, "red");
        colour.Name = "blue";
        return true;
    });
    user.forms.Add<Number>([](Number& number) {
        number.Value = 7;
        return false;
    });
    Colour colour{"red"};
    EXPECT_TRUE(ShowForm(colour));
    EXPECT_EQ(colour.Name, "blue");
    Number number;
    EXPECT_FALSE(ShowForm(number)) << "it was given up";
}

TEST(Form, WithoutARunnerIsGivenUpAndTold) {
    FormRunners runners;
    Colour colour{"red"};
    EXPECT_FALSE(runners.Run(colour));
    std::string missing;
    runners.WhenMissing([&](std::string_view form) { missing = form; });
    EXPECT_FALSE(runners.Run(colour));
    EXPECT_EQ(colour.Name, "red");
    EXPECT_EQ(missing, "Dialog_Colour");
}

TEST(Form, GoesToAnotherRunnerForTheLengthOfAScope) {
    FormRunners runners;
    runners.Add<Number>([](Number& number) { return (number.Value = 1) != 0; });
    Number number;
    {
        const FormScope<Number> outer(runners, [](Number& form) { return (form.Value = 2) != 0; });
        {
            const FormScope<Number> inner(runners, [](Number& form) { return (form.Value = 3) != 0; });
            EXPECT_TRUE(runners.Run(number));
            EXPECT_EQ(number.Value, 3);
        }
        EXPECT_TRUE(runners.Run(number));
        EXPECT_EQ(number.Value, 2);
    }
    EXPECT_TRUE(runners.Run(number));
    EXPECT_EQ(number.Value, 1);
}

TEST(Form, HasNoRunnerLeftBehindAScope) {
    FormRunners runners;
    Number number;
    {
        const FormScope<Number> scope(runners, [](Number&) { return true; });
    }
    EXPECT_FALSE(runners.Run(number));
}

TEST(Form, MayExchangeItsRunnerWhileItRuns) {
    FormRunners runners;
    const std::string held(100, 'x');
    runners.Add<Colour>([&runners, held](Colour& colour) {
        runners.Add<Colour>({});
        colour.Name = held;
        return true;
    });
    Colour colour;
    EXPECT_TRUE(runners.Run(colour));
    EXPECT_EQ(colour.Name, std::string(100, 'x'));
    EXPECT_FALSE(runners.Run(colour));
}

TEST(Form, OfATestIsFilledInInOrder) {
    test::ScriptedUser user;
    user.WillFill<Number>([](Number& number) { return (number.Value = 1) != 0; });
    user.WillGiveUp<Colour>();
    user.WillFill<Number>([](Number& number) { return (number.Value = 2) != 0; });
    Number number;
    Colour colour;
    EXPECT_TRUE(ShowForm(number));
    EXPECT_EQ(number.Value, 1);
    EXPECT_TRUE(ShowForm(number));
    EXPECT_EQ(number.Value, 2);
    EXPECT_FALSE(ShowForm(colour));
    EXPECT_THAT(user.Asked(), testing::ElementsAre("Dialog_Number", "Dialog_Number", "Dialog_Colour"));
}

TEST(Form, ThatATestDoesNotExpectFailsIt) {
    EXPECT_NONFATAL_FAILURE(
        {
            test::ScriptedUser user;
            Number number;
            EXPECT_FALSE(ShowForm(number));
        },
        "nobody fills in: Dialog_Number");
    EXPECT_NONFATAL_FAILURE(
        {
            test::ScriptedUser user;
            user.WillGiveUp<Number>();
        },
        "nobody opened: Dialog_Number");
}

} // namespace
} // namespace kelvash
