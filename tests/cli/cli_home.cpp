#include "cli/cli_home.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

int Spawn(const std::vector<std::string>& words, const fs::path& folder) {
    std::vector<std::string> copies = {KELVASH_CLI};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : copies)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const std::string input = folder / "stdin";
    const std::string output = folder / "stdout";
    const std::string errors = folder / "stderr";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, input.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t process = 0;
    const int failed = posix_spawn(&process, KELVASH_CLI, &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(failed, 0) << KELVASH_CLI;
    int status = 0;
    if (failed != 0 || waitpid(process, &status, 0) != process || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

} // namespace

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
    MakeFile(root / "stdin", input);
    CliRun run;
    run.status = Spawn(words, root);
    std::istringstream output(BytesOf(root / "stdout"));
    for (std::string line; std::getline(output, line);)
        run.lines.push_back(line);
    run.errors = BytesOf(root / "stderr");
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
