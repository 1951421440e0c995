#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include <tavo/client/transcode/call.h>
#include <tavo/simulator/export.h>
#include <tavo/simulator/models/post_codes.h>
#include <tavo/simulator/models/rom_emulation.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// An "lpc": tells which of its connectors lead to a board with power. Its members are the "lpcPostCode" and
/// the "lpcRomEmulation", which are of use without it too.
class TAVO_SIMULATOR_API Lpc : public SimulatedObject {
public:
    explicit Lpc(std::shared_ptr<Board> board);
};

/// An "lpcRomEmulation".
class TAVO_SIMULATOR_API LpcRomEmulation : public SimulatedObject {
public:
    explicit LpcRomEmulation(std::shared_ptr<Board> board);
    /// Erased and disabled.
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
    /// Empty, enabled, with the options of the beginning.
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
