#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace TAVO::cli {

/// A file that keeps what goes over a serial line, with the time of each line: what was received behind `<`,
/// what was sent behind `>`. Invisible characters are escaped. Adds to a file that is there already.
class SerialLog {
public:
    /// @throws Failure (usage) if the file cannot be opened.
    explicit SerialLog(const std::string& path);
    SerialLog(const SerialLog&) = delete;
    SerialLog& operator=(const SerialLog&) = delete;
    /// Writes lines that have no end yet. Ignores errors.
    ~SerialLog();

    /// Both throw Failure (protocol) if the file cannot be written.
    void received(std::string_view bytes) { add(received_, bytes); }
    void sent(std::string_view bytes) { add(sent_, bytes); }

private:
    /// A line that is not complete.
    struct Line {
        char mark;
        std::string text = {};
        /// Of its first byte, in microseconds.
        std::int64_t time = 0;
    };

    void add(Line& line, std::string_view bytes);
    void write(Line& line);

    std::string path_;
    int file_;
    Line received_{'<'};
    Line sent_{'>'};
};

} // namespace TAVO::cli
