// A console program that does what its arguments say, one order after the other:
//
//   say TEXT        prints the text; \n \r \b \t \0 stand for those characters
//   complain TEXT   the same on standard error
//   sleep MS        waits
//   folder          prints the working folder
//   variable NAME   prints a variable of the environment
//   input           prints how many bytes standard input gives before its end
//   echo            prints what standard input gives
//   flood COUNT     that many lines on each of both streams, in turns
//   deaf            takes no notice of a request to end
//   child WORDS     leaves a process that does what the words of this one argument say, a blank between two
//   write FILE TEXT writes a file
//   arguments ...   prints each further argument in brackets, a line each; the last order
//   exit CODE       ends
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
// Behind windows.h.
#include <shellapi.h>
#else
#include <unistd.h>
#endif

namespace {

std::string Unescaped(const std::string& text) {
    static const std::string letters = "nrbt0";
    static const std::string characters("\n\r\b\t\0", 5);
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter =
            text[i] == '\\' && i + 1 < text.size() ? letters.find(text[i + 1]) : std::string::npos;
        if (letter != std::string::npos) ++i;
        plain += letter == std::string::npos ? text[i] : characters[letter];
    }
    return plain;
}

void Print(std::FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

#ifdef _WIN32
void Leave(const std::string& words) {
    std::wstring line(MAX_PATH, L'\0');
    line.resize(GetModuleFileNameW(nullptr, line.data(), MAX_PATH));
    line = L'"' + line + L"\" " + std::filesystem::path(words).wstring();
    STARTUPINFOW info{};
    info.cb = sizeof info;
    PROCESS_INFORMATION made{};
    CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &info, &made);
}
#else
// In a session of its own, as Wine's programs are.
void Leave(const std::string& words) {
    if (fork() != 0) return;
    setsid();
    std::istringstream rest(words);
    std::vector<std::string> own = {"child"};
    for (std::string word; rest >> word;)
        own.push_back(word);
    std::vector<char*> pointers;
    for (std::string& word : own)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv("/proc/self/exe", pointers.data());
    std::abort();
}
#endif

class Orders {
  public:
    explicit Orders(std::vector<std::string> words) : words_(std::move(words)) {}

    int Obey() {
        while (at_ < words_.size()) {
            const std::string order = Next();
            if (order == "exit") return std::atoi(Next().c_str());
            if (order == "arguments") return PrintRest();
            if (!ObeyOne(order)) return 99;
        }
        return 0;
    }

  private:
    std::string Next() { return at_ < words_.size() ? words_[at_++] : std::string(); }

    bool ObeyOne(const std::string& order) {
        if (order == "say") {
            Print(stdout, Unescaped(Next()));
        } else if (order == "complain") {
            Print(stderr, Unescaped(Next()));
        } else if (order == "sleep") {
            std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(Next().c_str())));
        } else if (order == "folder") {
            Print(stdout, std::filesystem::current_path().string() + "\n");
        } else if (order == "variable") {
            const char* value = std::getenv(Next().c_str());
            Print(stdout, std::string(value == nullptr ? "(none)" : value) + "\n");
        } else if (order == "input") {
            int count = 0;
            while (std::fgetc(stdin) != EOF)
                ++count;
            Print(stdout, std::to_string(count) + "\n");
        } else if (order == "echo") {
            for (int c = std::fgetc(stdin); c != EOF; c = std::fgetc(stdin))
                Print(stdout, std::string(1, static_cast<char>(c)));
        } else if (order == "flood") {
            for (int left = std::atoi(Next().c_str()); left > 0; --left) {
                Print(stdout, "out\n");
                Print(stderr, "error\n");
            }
        } else if (order == "deaf") {
            std::signal(SIGTERM, SIG_IGN);
            std::signal(SIGINT, SIG_IGN);
        } else if (order == "child") {
            Leave(Next());
        } else if (order == "write") {
            std::ofstream file(std::filesystem::path(Next()), std::ios::binary);
            file << Next();
        } else {
            return false;
        }
        return true;
    }

    int PrintRest() {
        while (at_ < words_.size())
            Print(stdout, "[" + Next() + "]\n");
        return 0;
    }

    std::vector<std::string> words_;
    std::size_t at_ = 0;
};

// The arguments in UTF-8; the system's own list has them in the ANSI code page on Windows.
std::vector<std::string> ArgumentsOf([[maybe_unused]] int count, [[maybe_unused]] char** words) {
#ifdef _WIN32
    std::vector<std::string> arguments;
    int wide_count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &wide_count);
    for (int i = 1; i < wide_count; ++i)
        arguments.push_back(std::filesystem::path(wide[i]).string());
    return arguments;
#else
    return {words + 1, words + count};
#endif
}

} // namespace

int main(int count, char** words) {
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
    return Orders(ArgumentsOf(count, words)).Obey();
}
