#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include <tavo/cli/door/conversation.h>

namespace TAVO::cli {

/// The flash that a programmer's client works with.
struct FlashAccess {
    using Bytes = std::vector<std::uint8_t>;

    /// Selects the chip, sends, and receives that many bytes. Empty if it fails.
    std::function<std::optional<Bytes>(std::span<const std::uint8_t>, std::size_t)> transfer;
    /// Brings what was written into the device. Returns whether there was anything.
    std::function<bool()> settle;
    /// The client lets the chip go. Returns false if what it wrote is not there.
    std::function<bool()> release;
    /// The client has gone.
    std::function<void()> leave;
};

/// A client of the serprog protocol, version 1, for which an SPI flash is there. It is refused what is no
/// command of this kind.
class Serprog final : public Conversation {
public:
    /// @param access must outlive the conversation.
    Serprog(const FlashAccess& access, Send send);

    bool receive(std::span<const std::uint8_t> bytes) override;
    std::optional<Milliseconds> pause(Milliseconds silence) override;
    void end() override;

    /// How long what was written waits for more. A client that goes on after a pause is slow, and gets twice
    /// as long each time; but less than the second after which flashrom begins to verify.
    static constexpr Milliseconds patience{50};
    static constexpr Milliseconds longestPatience{400};
    /// What clients are told to send and to receive at most in one operation.
    static constexpr std::uint32_t longestWrite = 32 * 1024;
    static constexpr std::uint32_t longestRead = 64 * 1024;
    /// What is taken from one: some do not count the command and the address.
    static constexpr std::uint32_t longestTaken = 64 * 1024;

private:
    using Bytes = std::vector<std::uint8_t>;
    using Command = std::span<const std::uint8_t>;

    /// Executes the command at the front. Returns false if it is not there as a whole.
    bool takeCommand();
    void execute(Command command);
    void transfer(Command command);
    void answer(bool isDone, const Bytes& more = {});
    void sendAnswers();

    const FlashAccess& access_;
    Send send_;
    Bytes buffer_;
    std::size_t begin_ = 0;   ///< of what has not been executed
    std::size_t skipped_ = 0; ///< so many bytes of an operation that is too long will come
    Bytes answers_;
    bool isTouched_ = false; ///< since it was last settled
    Milliseconds patience_ = patience;
};

} // namespace TAVO::cli
