#include <tavo/cli/completion.h>

#include <algorithm>
#include <optional>
#include <utility>

#include <tavo/cli/command_list.h>
#include <tavo/cli/option_text.h>
#include <tavo/cli/program.h>

namespace TAVO::cli {

namespace {

bool contains(const std::vector<std::string>& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// "--host=lab1" has its value within.
std::size_t endOfName(const std::string& word) {
    return word.starts_with("--") ? std::min(word.find('='), word.size()) : word.size();
}

/// A line as far as it has been typed.
class Line {
public:
    /// @param ofTool what stands beside every command.
    Line(const std::vector<std::string>& words, const NamesOfKind& names, OptionList ofTool)
        : names_(names)
        , ofTool_(std::move(ofTool)) {
        for (const auto& word : words)
            take(word);
    }

    Completions completions(const std::string& begun) const {
        if (value_)
            return valuesOf(*value_, begun);
        if (onlyArguments_ || !begun.starts_with('-'))
            return plainWords(begun);
        const auto name = begun.substr(0, endOfName(begun));
        if (name == begun)
            return {options()};
        const auto option = optionNamed(name);
        if (!option || option->kind() == ValueKind::flag)
            return {};
        auto values = valuesOf(*option, begun.substr(name.size() + 1));
        for (auto& value : values.words)
            value.insert(0, name + '=');
        return values;
    }

    const GivenOptions& given() const { return given_; }

private:
    void take(const std::string& word) {
        if (value_) {
            note(*value_, word);
            value_.reset();
        } else if (word == "--" && !onlyArguments_) {
            onlyArguments_ = true;
        } else if (word.starts_with('-') && !onlyArguments_) {
            takeOption(word);
        } else if (const auto below = namesBelow(path_); contains(below, word)) {
            path_ += (path_.empty() ? "" : " ") + word;
            if (const auto command = findCommand(path_))
                bound_ = command->bind();
        } else {
            arguments_.push_back(word);
        }
    }

    void takeOption(const std::string& word) {
        const auto name = word.substr(0, endOfName(word));
        const auto option = optionNamed(name);
        if (!option)
            return;
        if (option->kind() == ValueKind::flag)
            note(*option, "");
        else if (name != word)
            note(*option, word.substr(name.size() + 1));
        else
            value_ = option;
    }

    void note(const Option& option, const std::string& value) {
        for (const auto& other : ofTool_)
            if (other.names == option.names)
                given_[namesOf(option).back()] = value;
    }

    std::optional<Option> optionNamed(const std::string& name) const {
        for (const auto* list : {&bound_.options, &ofTool_})
            for (const auto& option : *list)
                if (!option.isArgument() && contains(namesOf(option), name))
                    return option;
        if (name == "--object" && groupWithObject(path_))
            return Option{name, "", &object_, {.nameKind = NameKind::object}};
        return std::nullopt;
    }

    Completions plainWords(const std::string& begun) const {
        if (auto below = namesBelow(path_); !below.empty())
            return arguments_.empty() ? Completions{std::move(below)} : Completions();
        std::size_t position = 0;
        for (const auto& option : bound_.options)
            if (option.isArgument() && (position++ == arguments_.size() || option.isRepeated()))
                return valuesOf(option, begun);
        return {};
    }

    Completions valuesOf(const Option& option, const std::string& begun) const {
        const bool files = option.kind() == ValueKind::file;
        const auto kind = option.rules.nameKind;
        if (kind == NameKind::command)
            return {topicsBehind(arguments_)};
        if (kind && (arguments_.empty() || !option.isArgument()))
            return {names_(*kind, begun), files};
        return {option.rules.choices, files};
    }

    static std::vector<std::string> topicsBehind(const std::vector<std::string>& words) {
        std::string path;
        for (const auto& word : words)
            path += (path.empty() ? "" : " ") + word;
        auto names = namesBelow(path);
        if (path.empty())
            names.emplace_back("exit-status");
        return names;
    }

    std::vector<std::string> options() const {
        std::vector<std::string> all{"--help"};
        if (groupWithObject(path_))
            all.emplace_back("--object");
        for (const auto* list : {&bound_.options, &ofTool_})
            for (const auto& option : *list)
                if (!option.isArgument())
                    all.push_back(namesOf(option).back());
        return all;
    }

    const NamesOfKind& names_;
    OptionList ofTool_;
    GivenOptions given_;
    std::string path_;
    BoundCommand bound_;
    std::vector<std::string> arguments_;
    bool onlyArguments_ = false;
    /// The option whose value comes next.
    std::optional<Option> value_;
    mutable std::string object_;
};

/// The options of the tool, with a place for their values.
struct ToolOptions {
    ToolOptions() { program.describe(list); }

    Program program;
    OptionList list;
};

} // namespace

Completions completionsFor(const std::vector<std::string>& words, const std::string& begun,
                           const NamesOfKind& names) {
    return Line(words, names, {}).completions(begun);
}

Completions completionsForTool(const std::vector<std::string>& words, const std::string& begun,
                               const NamesOfKind& names) {
    const ToolOptions tool;
    auto completions = Line(words, names, tool.list).completions(begun);
    const bool startsWithOption = words.empty() && begun.starts_with('-') && endOfName(begun) == begun.size();
    if (startsWithOption)
        completions.words.emplace_back("--version");
    return completions;
}

GivenOptions optionsOfTool(const std::vector<std::string>& words) {
    const ToolOptions tool;
    const NamesOfKind none;
    return Line(words, none, tool.list).given();
}

} // namespace TAVO::cli
