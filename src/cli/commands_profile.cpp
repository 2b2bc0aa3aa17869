// The profile's fields by name.
#include <limits>
#include <type_traits>

#include "cli/commands.h"
#include "cli/messages.h"
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

} // namespace

Result Profile(Session& session) {
    const Options& options = session.options;
    Result result;
    if (!TakeHome(session, MissingHome::Refuse)) return result;
    core::ProfileState state{};
    if (!core::OpenProfile(state)) return result;
    // What an older version has left is brought up to date first, with the questions that belong to it.
    const bool upgrade = options.value && state == core::ProfileState::Upgraded;
    result.ok = !upgrade || StartUpWithArchive(session, {});
    for (const ProfileField& field : core::kProfileFields) {
        if (field.name.empty() || (!options.field.empty() && !EqualNoCase(field.name, options.field)))
            continue;
        if (options.value && result.ok) result.ok = SetField(field, *options.value);
        const nlohmann::ordered_json value = ValueOf(field);
        result.fields[std::string(field.name)] = value;
        // As it is typed: true and false, no quotes.
        result.plain += std::string(field.name) + ": " +
                        (value.is_string() ? value.get<std::string>() : JsonText(value)) + "\n";
    }
    if (upgrade) result.ok = EndSession(session) && result.ok;
    return result;
}

} // namespace kelvash::cli
