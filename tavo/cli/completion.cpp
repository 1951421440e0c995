#include <tavo/cli/completion.h>

#include <algorithm>
#include <optional>
#include <sstream>

#include <tavo/cli/command_list.h>

namespace TAVO::cli {

namespace {

bool isNamed(const Option& option, const std::string& word) {
    std::istringstream names(option.names);
    for (std::string name; std::getline(names, name, ',');)
        if (name == word)
            return true;
    return false;
}

/// A line as far as it has been typed.
class Line {
public:
    Line(const std::vector<std::string>& words, const NamesOnDevice& names)
        : names_(names) {
        for (const auto& word : words)
            take(word);
    }

    Completions completions(const std::string& begun) const {
        if (value_)
            return valuesOf(*value_, begun);
        if (wantsObject_)
            return {names_(NameKind::object, begun)};
        if (begun.starts_with('-'))
            return {options()};
        if (auto below = namesBelow(path_); !below.empty())
            return {std::move(below)};
        std::size_t position = 0;
        for (const auto& option : bound_.options)
            if (option.isArgument() && (position++ == arguments_ || option.isRepeated()))
                return valuesOf(option, begun);
        return {};
    }

private:
    void take(const std::string& word) {
        if (value_ || wantsObject_) {
            value_.reset();
            wantsObject_ = false;
        } else if (word == "--object") {
            wantsObject_ = true;
        } else if (word.starts_with('-')) {
            for (const auto& option : bound_.options)
                if (isNamed(option, word) && option.kind() != ValueKind::flag)
                    value_ = option;
        } else if (const auto below = namesBelow(path_);
                   std::find(below.begin(), below.end(), word) != below.end()) {
            path_ += (path_.empty() ? "" : " ") + word;
            if (const auto command = findCommand(path_))
                bound_ = command->bind();
        } else {
            ++arguments_;
        }
    }

    Completions valuesOf(const Option& option, const std::string& begun) const {
        if (option.rules.nameKind && (arguments_ == 0 || !option.isArgument()))
            return {names_(*option.rules.nameKind, begun)};
        return {option.rules.choices, option.kind() == ValueKind::file};
    }

    std::vector<std::string> options() const {
        std::vector<std::string> all{"--help"};
        if (groupWithObject(path_))
            all.emplace_back("--object");
        for (const auto& option : bound_.options)
            if (!option.isArgument())
                all.push_back(option.names.substr(option.names.rfind(',') + 1));
        return all;
    }

    const NamesOnDevice& names_;
    std::string path_;
    BoundCommand bound_;
    std::size_t arguments_ = 0;
    /// The option whose value comes next.
    std::optional<Option> value_;
    bool wantsObject_ = false;
};

} // namespace

Completions completionsFor(const std::vector<std::string>& words, const std::string& begun,
                           const NamesOnDevice& names) {
    return Line(words, names).completions(begun);
}

} // namespace TAVO::cli
