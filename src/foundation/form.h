// Forms that the logic opens.
//
// A form is a record of the logic: what it is to show and, once it has been ended, what was chosen in it. Who
// shows it is the program's business, which registers a runner for each record: the window its form, the
// command line one that asks an answers file, a test its script.
//
//     struct TrleFolderChoice {
//         static constexpr const char* kForm = "Dialog_TrovaTrle"; // its name in events and answers
//         std::string Folder;                                       // where it starts, then the chosen one
//     };
//     TrleFolderChoice choice{known};
//     if (!ShowForm(choice)) return false; // given up
//
// ShowForm is in user.h. checks/forms.sh sees to it that both programs have a runner for each record.
#pragma once

#include <any>
#include <concepts>
#include <functional>
#include <string_view>
#include <typeindex>
#include <unordered_map>
#include <utility>

namespace kelvash {

template <class Record>
concept FormRecord = requires {
    { Record::kForm } -> std::convertible_to<std::string_view>;
};

// Shows the form and fills in what was chosen; false if it was given up.
template <FormRecord Record>
using FormRunner = std::function<bool(Record&)>;

class FormRunners {
  public:
    template <FormRecord Record>
    void Add(FormRunner<Record> runner) {
        Of<Record>() = std::move(runner);
    }
    // Gives the former runner, empty if there was none.
    template <FormRecord Record>
    FormRunner<Record> Exchange(FormRunner<Record> runner) {
        return std::exchange(Of<Record>(), std::move(runner));
    }
    // Is told the name of a form that has no runner and so is given up.
    void WhenMissing(std::function<void(std::string_view form)> tell) { missing_ = std::move(tell); }

    template <FormRecord Record>
    bool Run(Record& record) {
        const FormRunner<Record> runner = Of<Record>(); // a copy: it may be exchanged while it runs
        if (runner) return runner(record);
        if (missing_) missing_(Record::kForm);
        return false;
    }

  private:
    template <FormRecord Record>
    FormRunner<Record>& Of() {
        std::any& held = runners_[typeid(Record)];
        if (!held.has_value()) held = FormRunner<Record>();
        return *std::any_cast<FormRunner<Record>>(&held);
    }

    std::unordered_map<std::type_index, std::any> runners_; // each holds the FormRunner of its record
    std::function<void(std::string_view)> missing_;
};

// Another runner for a record's form, as long as it lives: for who knows the answer already.
template <FormRecord Record>
class FormScope {
  public:
    FormScope(FormRunners& runners, FormRunner<Record> runner)
        : runners_(runners), former_(runners.Exchange<Record>(std::move(runner))) {}
    ~FormScope() { runners_.Add<Record>(std::move(former_)); }
    FormScope(const FormScope&) = delete;
    FormScope& operator=(const FormScope&) = delete;

  private:
    FormRunners& runners_;
    FormRunner<Record> former_;
};

} // namespace kelvash
