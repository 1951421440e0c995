#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>

namespace TAVO::simulator {

/// What the board's firmware shows on its serial line: messages while it boots, then a prompt that takes
/// commands.
///
/// Output that nobody takes is kept up to `longestBacklog` bytes; the oldest are lost then. What is typed
/// before the prompt appears is lost, and so are NUL bytes at any time.
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
    /// Drops the output that nobody took so far.
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
