#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>

namespace TAVO::simulator {

/// The firmware's serial console: messages during boot, then a command prompt.
///
/// Keeps up to `longestBacklog` bytes of unread output and drops the oldest beyond that. Ignores input before
/// the prompt appears, and NUL bytes at any time.
class TAVO_SIMULATOR_API SerialConsole : public BoardObserver {
public:
    static constexpr std::size_t longestBacklog = std::size_t{16} * 1024;
    static constexpr std::size_t longestLine = 256;
    static constexpr std::string_view prompt = "target> ";

    explicit SerialConsole(std::shared_ptr<Board> board);

    /// Types one byte.
    void type(std::uint8_t byte);
    /// Takes up to `count` bytes of output.
    std::string take(std::size_t count);
    /// Drops the unread output.
    void discardOutput();

protected:
    void settle(std::uint64_t time) override;
    void boardChanged() override;

private:
    void catchUp();
    void print(std::string_view text);
    void loseOldest();
    void endLine();
    void run(const std::string& line);
    void showStatus();

    std::string output_;
    std::string line_;
    bool afterCarriageReturn_ = false;
    std::uint64_t bootTime_ = 0;
    std::size_t nextMessage_ = 0;
    bool booting_ = false;
};

} // namespace TAVO::simulator
