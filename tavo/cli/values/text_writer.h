#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>
#include <type_traits>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/values/sink.h>
#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

/// Writes text for people. Makes every formatted text visible, whatever its source, so that only the tool's
/// own words end lines or control the terminal.
class TextWriter {
    template <class T>
    static auto shown(const T& argument) {
        if constexpr (std::is_convertible_v<const T&, std::string_view>) {
            return VisibleText{argument};
        } else {
            static_assert(std::is_arithmetic_v<T>, "nothing else may hide a text");
            return argument;
        }
    }

public:
    explicit TextWriter(Sink& sink)
        : sink_(sink) {}

    /// Writes the tool's own words unchanged.
    void write(std::string_view words) { sink_.write(words); }
    /// `format` is the tool's own words; texts among the arguments are made visible.
    template <class... Arguments>
    void print(fmt::format_string<decltype(shown(std::declval<const Arguments&>()))...> format,
               const Arguments&... arguments) {
        constexpr std::size_t atOnce = 4096;
        if ((std::size_t{0} + ... + lengthOf(arguments)) <= atOnce) {
            fmt::memory_buffer line;
            fmt::format_to(std::back_inserter(line), format, shown(arguments)...);
            sink_.write({line.data(), line.size()});
        } else {
            fmt::format_to(Characters(sink_), format, shown(arguments)...);
        }
    }
    /// Writes a text in double quotes, with \ before each double quote and each \.
    void quote(std::string_view text);

private:
    template <class T>
    static std::size_t lengthOf(const T& argument) {
        if constexpr (std::is_convertible_v<const T&, std::string_view>)
            return std::string_view(argument).size();
        else
            return 0;
    }

    /// Output iterator for texts too long to buffer.
    class Characters {
    public:
        using iterator_category = std::output_iterator_tag;
        using value_type = void;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = void;

        explicit Characters(Sink& sink)
            : sink_(&sink) {}
        Characters& operator=(char c) {
            sink_->write({&c, 1});
            return *this;
        }
        Characters& operator*() { return *this; }
        Characters& operator++() { return *this; }
        Characters& operator++(int) { return *this; }

    private:
        Sink* sink_;
    };

    Sink& sink_;
};

} // namespace TAVO::cli
