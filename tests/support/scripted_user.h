// A user whose answers a test has written down. A question without an answer, an answer that nobody asked
// for, and a failure or warning that the test doesn't look at fail it.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "foundation/user.h"

namespace kelvash::test {

class ScriptedUser final : public User {
  public:
    ScriptedUser();
    ~ScriptedUser() override;

    // The next box whose text or title holds `when` gets this answer: "yes", "no", "ok", "cancel", ...,
    // "nobody", a text, a path. Answers for different boxes don't wait for each other. Every
    // question has to be one of the message table.
    void WillAnswer(const std::string& when, const std::string& answer);
    // The same for a box that may come or not, each time.
    void MayAnswer(const std::string& when, const std::string& answer);
    // The next form of this record is filled in like this; false gives it up. A form that nobody fills in
    // fails the test.
    template <FormRecord Record>
    void WillFill(FormRunner<Record> fill) {
        fills_.push_back({Record::kForm, [fill = std::move(fill)](void* record) {
                              return fill(*static_cast<Record*>(record));
                          }});
        forms.Add<Record>([this](Record& record) { return Fill(Record::kForm, &record); });
    }
    // It is given up as it is.
    template <FormRecord Record>
    void WillGiveUp() {
        WillFill<Record>([](Record&) { return false; });
    }
    // All messages as "critical: text" in order. Those told until now count as looked at.
    const std::vector<std::string>& Told() const {
        looked_at_ = told_.size();
        return told_;
    }
    // A failure or warning that holds this text is no surprise, however often it comes.
    void MayBeTold(const std::string& text) { expected_.push_back(text); }
    // Everything that was asked, as texts, titles or names of forms.
    const std::vector<std::string>& Asked() const { return asked_; }
    // Captions of progress dialogs and texts of labels, in order.
    const std::vector<std::string>& Shown() const { return shown_; }
    void Forget();

    void Message(MessageStyle style, const MessageText& text) override;
    Answer Ask(Buttons buttons, MessageStyle style, const MessageText& text) override;
    std::optional<std::string> Input(const std::string& title, const MessageText& text,
                                     const std::string& initial) override;
    std::optional<std::string> OpenFile(const FileDialog& dialog) override;
    std::optional<std::string> SaveFile(const FileDialog& dialog) override;
    std::optional<std::string> ChooseFolder(const MessageText& caption, const std::string& start) override;
    void OpenProgress(BarPlace dialog, const std::string& caption) override;
    void CloseProgress(BarPlace) override {
        if (on_close) on_close();
    }
    void SetLabel(BarPlace place, const std::string& text) override;
    void SetBar(BarPlace, int percent) override { percents.push_back(last_percent = percent); }
    void LevelListChanged() override { ++list_changes; }
    void PumpEvents() override {
        stop = ++pumps == stop_at_pump || stop;
        if (when_pumped) when_pumped();
    }
    bool JobWaits() override { return job_waits; }
    bool StopRequested() override { return stop || (stop_if_offered && JobCanStop()); }

    bool stop = false;               // whatever runs
    bool stop_if_offered = false;    // as real users can
    std::function<void()> when_told; // by a message, before it is noted
    std::function<void()> when_pumped;
    bool job_waits = false;
    int pumps = 0;
    int stop_at_pump = 0; // counted from 1; 0 is never
    int last_percent = -1;
    std::vector<int> percents; // all that bars were set to
    int list_changes = 0;
    std::string last_start; // where the last file or folder dialog started
    std::string last_filter;
    std::function<void()> on_close; // called when a progress dialog is about to close

  private:
    std::optional<std::string> Take(const std::string& text);
    bool Fill(const std::string& form, void* record);

    struct Line {
        std::string when;
        std::string answer;
    };
    struct Filling {
        std::string form;
        std::function<bool(void*)> fill; // takes a record of the form
    };
    std::deque<Line> script_;
    std::deque<Filling> fills_;
    std::vector<Line> standing_;
    bool IsSurprise(const std::string& message) const;
    void FailOnSurprises() const;
    std::vector<std::string> told_;
    std::vector<std::string> expected_;
    mutable std::size_t looked_at_ = 0;
    std::vector<std::string> asked_;
    std::vector<std::string> shown_;
    User* old_user_;
};

} // namespace kelvash::test
