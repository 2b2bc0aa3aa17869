#include "cli/cli_home.h"

#include <cstdlib>
#include <sstream>

#include "support/built.h"
#include "support/program_run.h"

namespace kelvash::test {

namespace fs = std::filesystem;

std::string CliRun::Output() const {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

CliHome::CliHome() {
    // Neither the tester's own home nor a display is of any concern here.
    unsetenv("KELVASH_HOME");
    unsetenv("DISPLAY");
    setenv("KELVASH_GAME_MS", "100", 1);
}

CliRun CliHome::Bare(const std::vector<std::string>& words, const std::string& input) {
    const ProgramEnd end = RunProgram({Built("bin/kelvash-cli"), words, input, root});
    CliRun run;
    run.status = end.status;
    run.errors = end.errors;
    std::istringstream output(end.output);
    for (std::string line; std::getline(output, line);)
        run.lines.push_back(line);
    return run;
}

CliRun CliHome::Json(std::vector<std::string> words) {
    words.insert(words.begin(), "--json");
    return Plain(std::move(words));
}

CliRun CliHome::Plain(std::vector<std::string> words, const std::string& input) {
    words.insert(words.begin(), {"--home", home.string(), "--drive", "C=" + drive.string()});
    return Bare(words, input);
}

void CliHome::SetUpHome() {
    MakeTrle(drive / "trle");
    const CliRun run = Json({"init", "--trle", "C:\\trle", "--archive-folder", "C:\\Levels"});
    ASSERT_EQ(run.status, 0) << run.Output() << run.errors;
}

std::string CliHome::Answers(const std::string& json) {
    MakeFile(root / "answers.json", json);
    return (root / "answers.json").string();
}

} // namespace kelvash::test
