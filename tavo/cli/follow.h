#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/cli/option_list.h>

namespace TAVO::cli {

class Output;

/// How often to look at something that changes, and for how long.
struct Pace {
    double interval = 0.1;
    /// Empty for no end.
    std::optional<double> timeout;

    /// @param needed options that these two make sense with only.
    void describe(OptionList& list, const std::vector<std::string>& needed = {});
};

/// Calls `look` at this pace until it returns true or the time is over.
/// @return what the last call returned. @throws Interrupted when a signal came; what `look` throws.
bool lookRepeatedly(const Pace& pace, const std::function<bool()>& look);

/// Prints states as lines: each when it is first seen, and again whenever it differs.
class Changes {
public:
    explicit Changes(Output& output)
        : output_(output) {}

    /// @param key what the state is one of. @param text the line, without its end.
    void show(const std::string& key, const nlohmann::json& state, const std::string& text);

private:
    Output& output_;
    std::map<std::string, nlohmann::json> last_;
};

} // namespace TAVO::cli
