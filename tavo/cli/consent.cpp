#include <tavo/cli/consent.h>

#include <cctype>
#include <cstdio>
#include <iostream>

#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

Consent::Consent(bool given)
    : given_(given) {
    if (!given_ && ::isatty(STDIN_FILENO) != 1)
        throw Failure(ExitCode::usage, "--yes is required: there is no terminal to ask at");
}

void Consent::ask(const std::string& question) const {
    if (given_)
        return;
    std::fputs((visible(question) + " [y/N] ").c_str(), stderr);
    std::fflush(stderr);
    InterruptWatch::waitForInput(STDIN_FILENO, std::chrono::hours(24));
    std::string answer;
    std::getline(std::cin, answer);
    if (!meansYes(answer))
        throw Failure(ExitCode::usage, "nothing was done: the answer was not yes");
}

bool meansYes(std::string answer) {
    std::erase_if(answer, [](char c) { return c == ' ' || c == '\t' || c == '\r'; });
    for (auto& c : answer)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return answer == "y" || answer == "yes";
}

} // namespace TAVO::cli
