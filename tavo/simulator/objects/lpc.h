#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include <tavo/client/transcode/call.h>
#include <tavo/simulator/export.h>
#include <tavo/simulator/models/post_codes.h>
#include <tavo/simulator/models/rom_emulation.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// An "lpc": reports which of its connectors lead to a powered board. Its members are an "lpcPostCode" and an
/// "lpcRomEmulation", which also work on their own.
class TAVO_SIMULATOR_API Lpc : public SimulatedObject {
public:
    explicit Lpc(std::shared_ptr<Board> board);
};

/// An "lpcRomEmulation".
class TAVO_SIMULATOR_API LpcRomEmulation : public SimulatedObject {
public:
    explicit LpcRomEmulation(std::shared_ptr<Board> board);
    /// @param capacity as for RomEmulation.
    LpcRomEmulation(std::shared_ptr<Board> board, std::size_t capacity);
    /// Erases the memory and disables the emulation.
    void reset() override;

    RomEmulation& rom() { return rom_; }

private:
    RomEmulation rom_;
};

/// An "lpcPostCode".
class TAVO_SIMULATOR_API LpcPostCode : public SimulatedObject {
public:
    /// @param fromEmulatedRom as for PostCodes.
    LpcPostCode(std::shared_ptr<Board> board, std::function<bool()> fromEmulatedRom);
    /// Empties and enables the receiver and resets its options.
    void reset() override;

    PostCodes& postCodes() { return postCodes_; }

private:
    void serveFifo();
    void serveOptions();
    template <class GetReply, class SetRequest>
    void serveOption(const TAVOXTranscode::Call<None, GetReply>& get,
                     const TAVOXTranscode::Call<SetRequest>& set, std::uint8_t SetRequest::*wanted,
                     bool PostCodes::Options::*option);

    PostCodes postCodes_;
};

} // namespace TAVO::simulator
