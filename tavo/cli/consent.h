#pragma once

#include <string>

namespace TAVO::cli {

/// The user's consent to something that is hard to undo.
class Consent {
public:
    /// Make it before anything is sent.
    /// @param given whether the arguments already said yes.
    /// @throws Failure (usage) if they did not and standard input is no terminal to ask at.
    explicit Consent(bool given);

    /// Asks at the terminal, unless it was given. Call it when everything has been checked that needs no
    /// question, and before anything is changed.
    /// @throws Failure (usage) if the answer is not yes.
    void ask(const std::string& question) const;

private:
    bool given_;
};

/// Whether the answer to a question is y or yes, in any letter case.
bool meansYes(std::string answer);

} // namespace TAVO::cli
