#include <tavo/cli/consent.h>

#include <cstdio>
#include <iostream>

#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

void requireConsent(const std::string& question, bool given) {
    if (given)
        return;
    if (::isatty(STDIN_FILENO) != 1)
        throw Failure(ExitCode::usage, "--yes is required: there is no terminal to ask at");
    std::fputs((visible(question) + " [y/N] ").c_str(), stderr);
    std::fflush(stderr);
    InterruptWatch::waitForInput(STDIN_FILENO, std::chrono::hours(24));
    std::string answer;
    std::getline(std::cin, answer);
    if (answer != "y" && answer != "Y" && answer != "yes")
        throw Failure(ExitCode::usage, "nothing was done: the answer was not yes");
}

} // namespace TAVO::cli
