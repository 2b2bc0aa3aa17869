// The profile's fields by name.
#include <limits>
#include <map>
#include <memory>
#include <type_traits>

#include "cli/command.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "core/profile.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::cli {

namespace {

using core::profile;
using core::ProfileRecord;
using ProfileField = Field<ProfileRecord>;

nlohmann::ordered_json ValueOf(const ProfileField& field) {
    return std::visit(
        [](auto member) -> nlohmann::ordered_json {
            const auto& value = profile.*member;
            if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::string>)
                return std::string(Trim(value));
            else
                return value;
        },
        field.member);
}

// Sets a field from what was typed; false, after a message, if the field can't hold it.
struct Setter {
    const ProfileField& field;
    const std::string& typed;

    bool operator()(std::string ProfileRecord::*member) const {
        if (FitText(typed, field.width) != typed)
            return Refuse(msg::kCliBadText, {std::string(field.name), std::to_string(field.width)});
        profile.*member = typed;
        return true;
    }
    bool operator()(bool ProfileRecord::*member) const {
        const bool yes = EqualNoCase(typed, "true");
        if (!yes && !EqualNoCase(typed, "false"))
            return Refuse(msg::kCliBadBoolean, {std::string(field.name)});
        profile.*member = yes;
        return true;
    }
    template <class Integer>
    bool operator()(Integer ProfileRecord::*member) const {
        using Limits = std::numeric_limits<Integer>;
        const std::optional<std::int32_t> number = WholeNumber(typed);
        if (!number || *number < Limits::min() || *number > Limits::max())
            return Refuse(msg::kCliBadNumber, {std::string(field.name), std::to_string(Limits::min()),
                                               std::to_string(Limits::max())});
        profile.*member = static_cast<Integer>(*number);
        return true;
    }
    bool operator()(double ProfileRecord::*) const { return false; } // there is no such field

    static bool Refuse(MessageId id, const MessageArgs& args) {
        TellCritical(LoadMessage(id, args));
        return false;
    }
};

bool SetField(const ProfileField& field, const std::string& typed) {
    if (!std::visit(Setter{field, typed}, field.member)) return false;
    if (core::WriteProfile()) return true;
    TellProfileNotSaved();
    return false;
}

struct ProfileRun {
    std::string wanted;               // name of a field; empty: all
    std::optional<std::string> value; // to be set
    // What was shown by field; the fields that nobody asked for are missing.
    std::map<std::string_view, nlohmann::ordered_json> shown;
    std::string lines;

    nlohmann::ordered_json Shown(std::string_view name) const {
        const auto found = shown.find(name);
        return found == shown.end() ? Absent() : found->second;
    }
};

void Show(const ProfileField& field, ProfileRun& run) {
    const nlohmann::ordered_json value = ValueOf(field);
    run.shown.emplace(field.name, value);
    // As it is typed: true and false, no quotes.
    run.lines += std::string(field.name) + ": " +
                 (value.is_string() ? value.get<std::string>() : JsonText(value)) + "\n";
}

bool ShowOrSet(Session& session, ProfileRun& run) {
    if (!TakeHome(session, MissingHome::Refuse)) return false;
    core::ProfileState state{};
    if (!core::OpenProfile(state)) return false;
    // What an older version has left is brought up to date first, with the questions that belong to it.
    const bool upgrade = run.value && state == core::ProfileState::Upgraded;
    bool ok = !upgrade || StartUpWithArchive(session, {});
    for (const ProfileField& field : core::kProfileFields) {
        if (field.name.empty() || (!run.wanted.empty() && !EqualNoCase(field.name, run.wanted))) continue;
        if (run.value && ok) ok = SetField(field, *run.value);
        Show(field, run);
    }
    if (upgrade) ok = EndSession(session) && ok;
    return ok;
}

} // namespace

Command ProfileCommand() {
    const auto run = std::make_shared<ProfileRun>();
    std::vector<std::string> names;
    std::vector<ResultField> fields;
    for (const ProfileField& field : core::kProfileFields) {
        if (field.name.empty()) continue;
        names.emplace_back(field.name);
        fields.push_back(
            {.name = names.back(), .value = [run, name = field.name] { return run->Shown(name); }});
    }
    return {.name = "profile",
            .about = "Shows the profile or one field of it, or sets a field. Booleans are true and false",
            .arguments = {{.name = "FIELD",
                           .value = &run->wanted,
                           .choices = std::move(names),
                           .any_case = true,
                           .type = ""},
                          {.name = "VALUE",
                           .value = &run->value,
                           .about = "The new value; behind '--' if it begins with a dash"}},
            .run = [run](Session& session) { return ShowOrSet(session, *run); },
            .fields = std::move(fields),
            .plain = [run] { return run->lines; }};
}

} // namespace kelvash::cli
