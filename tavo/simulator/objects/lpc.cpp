#include <tavo/simulator/objects/lpc.h>

#include <utility>
#include <vector>

#include <tavo/client/hwdebug/lpc.h>
#include <tavo/client/hwdebug/lpc_post_code.h>
#include <tavo/client/hwdebug/lpc_rom_emulation.h>
#include <tavo/simulator/objects/enable_methods.h>

namespace TAVO::simulator {

namespace {

namespace lpc_v1_0 = TAVOXTranscode::lpc_v1_0;
namespace lpcPostCode_v1_0 = TAVOXTranscode::lpcPostCode_v1_0;
namespace lpcRomEmulation_v1_0 = TAVOXTranscode::lpcRomEmulation_v1_0;
using namespace dto::lpc;
using namespace dto::lpcPostCode;
using namespace dto::lpcRomEmulation;

} // namespace

Lpc::Lpc(std::shared_ptr<Board> board)
    : SimulatedObject("lpc", "1.0") {
    on(lpc_v1_0::headerConnectGet, [board = std::move(board)] {
        std::vector<HeaderConnection> connections{{"LPC", board->powered()}, {"TPM", false}};
        return makeRecord<HeaderConnectionsReply>(std::move(connections));
    });
}

LpcRomEmulation::LpcRomEmulation(std::shared_ptr<Board> board)
    : LpcRomEmulation(std::move(board), RomEmulation::size) {}

LpcRomEmulation::LpcRomEmulation(std::shared_ptr<Board> board, std::size_t capacity)
    : SimulatedObject("lpcRomEmulation", "1.0")
    , rom_(std::move(board), capacity) {
    on(lpcRomEmulation_v1_0::sramSizeGet, [this] { return makeRecord<SramSizeGetReply>(rom_.capacity()); });
    on(lpcRomEmulation_v1_0::sramGet, [this](const SramGetRequest& request) {
        auto data = rom_.read(request.offset, request.length);
        if (!data)
            throw Refusal(return_code::badArgument);
        return makeRecord<SramGetReply>(std::move(*data));
    });
    on(lpcRomEmulation_v1_0::sramSet, [this](const SramSetRequest& request) {
        return return_code::badUnless(rom_.write(request.offset, request.data));
    });
    on(lpcRomEmulation_v1_0::optionRomTypeGet,
       [this] { return makeRecord<OptionRomTypeGetReply>(rom_.romType()); });
    on(lpcRomEmulation_v1_0::optionRomTypeSet, [this](const OptionRomTypeSetRequest& request) {
        return return_code::badUnless(rom_.setRomType(request.romType));
    });
    serveEnable(*this, rom_);
}

void LpcRomEmulation::reset() { rom_.reset(); }

LpcPostCode::LpcPostCode(std::shared_ptr<Board> board, std::function<bool()> fromEmulatedRom)
    : SimulatedObject("lpcPostCode", "1.0")
    , postCodes_(std::move(board), std::move(fromEmulatedRom)) {
    serveFifo();
    serveOptions();
    serveEnable(*this, postCodes_);
}

void LpcPostCode::reset() {
    postCodes_.setOptions({});
    postCodes_.setEnabled(true);
    postCodes_.clear();
    postCodes_.clearOverflow();
}

void LpcPostCode::serveFifo() {
    on(lpcPostCode_v1_0::postCodeGet, [this] { return makeRecord<PostCodeGetReply>(postCodes_.last()); });
    on(lpcPostCode_v1_0::fifoSizeGet, [this] { return makeRecord<FifoSizeGetReply>(postCodes_.capacity()); });
    on(lpcPostCode_v1_0::fifoGet, [this] {
        FifoGetReply reply;
        for (const auto& entry : postCodes_.entries())
            reply.entries.push_back({entry.code, entry.port, entry.firstAfterPowerOn, entry.time});
        return reply;
    });
    on(lpcPostCode_v1_0::fifoClear, [this] { postCodes_.clear(); });
    on(lpcPostCode_v1_0::fifoStatusGet, [this] {
        const auto held = postCodes_.entries().size();
        return makeRecord<FifoStatusReply>(held, postCodes_.overflow(), held == postCodes_.capacity(),
                                           held == 0, postCodes_.enabled());
    });
    on(lpcPostCode_v1_0::fifoStatusClear, [this] { postCodes_.clearOverflow(); });
}

void LpcPostCode::serveOptions() {
    using Options = PostCodes::Options;
    on(lpcPostCode_v1_0::optionPortGet,
       [this] { return makeRecord<OptionPortGetReply>(postCodes_.options().port); });
    on(lpcPostCode_v1_0::optionPortSet, [this](const OptionPortSetRequest& request) {
        auto options = postCodes_.options();
        options.port = request.port;
        postCodes_.setOptions(options);
    });
    serveOption(lpcPostCode_v1_0::optionPassiveGet, lpcPostCode_v1_0::optionPassiveSet,
                &OptionPassiveSetRequest::passive, &Options::passive);
    serveOption(lpcPostCode_v1_0::optionFifoCircularGet, lpcPostCode_v1_0::optionFifoCircularSet,
                &OptionFifoCircularSetRequest::circular, &Options::circular);
    serveOption(lpcPostCode_v1_0::optionFifoDiscardGet, lpcPostCode_v1_0::optionFifoDiscardSet,
                &OptionFifoDiscardSetRequest::discard, &Options::discardRepeated);
    serveOption(lpcPostCode_v1_0::optionFifoAutoResetGet, lpcPostCode_v1_0::optionFifoAutoResetSet,
                &OptionFifoAutoResetSetRequest::autoReset, &Options::resetAtPowerOn);
}

template <class GetReply, class SetRequest>
void LpcPostCode::serveOption(const TAVOXTranscode::Call<None, GetReply>& get,
                              const TAVOXTranscode::Call<SetRequest>& set, std::uint8_t SetRequest::*wanted,
                              bool PostCodes::Options::*option) {
    on(get, [this, option] { return makeRecord<GetReply>(postCodes_.options().*option); });
    on(set, [this, wanted, option](const SetRequest& request) {
        if (request.*wanted > 1)
            throw Refusal(return_code::badArgument);
        auto options = postCodes_.options();
        options.*option = request.*wanted == 1;
        postCodes_.setOptions(options);
    });
}

} // namespace TAVO::simulator
