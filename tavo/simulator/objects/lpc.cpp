#include <tavo/simulator/objects/lpc.h>

#include <string>
#include <utility>

#include <tavo/client/hwdebug/lpc_post_code_records.h>
#include <tavo/client/hwdebug/lpc_records.h>
#include <tavo/client/hwdebug/lpc_rom_emulation_records.h>
#include <tavo/simulator/objects/enable_methods.h>

namespace TAVO::simulator {

namespace {

using namespace dto::lpcPostCode;
using namespace dto::lpcRomEmulation;

std::uint8_t asByte(bool flag) { return flag ? 1 : 0; }

} // namespace

Lpc::Lpc(std::shared_ptr<Board> board)
    : SimulatedObject("lpc", "1.0") {
    on<None, dto::lpc::HeaderConnectionsReply>("headerConnectGet", [board = std::move(board)] {
        dto::lpc::HeaderConnectionsReply reply;
        reply.connections = {{"LPC", board->powered()}, {"TPM", false}};
        return reply;
    });
}

LpcRomEmulation::LpcRomEmulation(std::shared_ptr<Board> board)
    : SimulatedObject("lpcRomEmulation", "1.0")
    , rom_(std::move(board)) {
    on<None, SramSizeGetReply>("sramSizeGet", [] {
        SramSizeGetReply reply;
        reply.size = static_cast<std::int32_t>(RomEmulation::size);
        return reply;
    });
    on<SramGetRequest, SramGetReply>("sramGet", [this](const SramGetRequest& request) {
        auto data = rom_.read(request.offset, request.length);
        if (!data)
            throw Refusal(return_code::badArgument);
        SramGetReply reply;
        reply.data = std::move(*data);
        return reply;
    });
    on<SramSetRequest, None>("sramSet", [this](const SramSetRequest& request) {
        return return_code::badUnless(rom_.write(request.offset, request.data));
    });
    on<None, OptionRomTypeGetReply>("optionRomTypeGet", [this] {
        OptionRomTypeGetReply reply;
        reply.romType = rom_.romType();
        return reply;
    });
    on<OptionRomTypeSetRequest, None>("optionRomTypeSet", [this](const OptionRomTypeSetRequest& request) {
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
    on<None, PostCodeGetReply>("postCodeGet", [this] {
        PostCodeGetReply reply;
        reply.postCode = postCodes_.last();
        return reply;
    });
    on<None, FifoSizeGetReply>("fifoSizeGet", [this] {
        FifoSizeGetReply reply;
        reply.size = static_cast<std::int32_t>(postCodes_.capacity());
        return reply;
    });
    on<None, FifoGetReply>("fifoGet", [this] {
        FifoGetReply reply;
        for (const auto& entry : postCodes_.entries())
            reply.entries.push_back({entry.code, entry.port, asByte(entry.firstAfterPowerOn), entry.time});
        return reply;
    });
    on<None, None>("fifoClear", [this] { postCodes_.clear(); });
    on<None, FifoStatusReply>("fifoStatusGet", [this] {
        const auto held = postCodes_.entries().size();
        FifoStatusReply reply;
        reply.value = static_cast<std::int32_t>(held);
        reply.flag1 = postCodes_.overflow();
        reply.flag2 = held == postCodes_.capacity();
        reply.flag3 = held == 0;
        reply.flag4 = postCodes_.enabled();
        return reply;
    });
    on<None, None>("fifoStatusClear", [this] { postCodes_.clearOverflow(); });
}

void LpcPostCode::serveOptions() {
    using Options = PostCodes::Options;
    on<None, OptionPortGetReply>("optionPortGet", [this] {
        OptionPortGetReply reply;
        reply.port = postCodes_.options().port;
        return reply;
    });
    on<OptionPortSetRequest, None>("optionPortSet", [this](const OptionPortSetRequest& request) {
        auto options = postCodes_.options();
        options.port = request.port;
        postCodes_.setOptions(options);
    });
    serveOption("optionPassiveGet", "optionPassiveSet", &OptionPassiveGetReply::passive,
                &OptionPassiveSetRequest::passive, &Options::passive);
    serveOption("optionFifoCircularGet", "optionFifoCircularSet", &OptionFifoCircularGetReply::circular,
                &OptionFifoCircularSetRequest::circular, &Options::circular);
    serveOption("optionFifoDiscardGet", "optionFifoDiscardSet", &OptionFifoDiscardGetReply::discard,
                &OptionFifoDiscardSetRequest::discard, &Options::discardRepeated);
    serveOption("optionFifoAutoResetGet", "optionFifoAutoResetSet", &OptionFifoAutoResetGetReply::autoReset,
                &OptionFifoAutoResetSetRequest::autoReset, &Options::resetAtPowerOn);
}

template <class GetReply, class SetRequest>
void LpcPostCode::serveOption(const char* get, const char* set, std::uint8_t GetReply::*told,
                              std::uint8_t SetRequest::*wanted, bool PostCodes::Options::*option) {
    on<None, GetReply>(get, [this, told, option] {
        GetReply reply;
        reply.*told = asByte(postCodes_.options().*option);
        return reply;
    });
    on<SetRequest, None>(set, [this, wanted, option](const SetRequest& request) {
        if (request.*wanted > 1)
            throw Refusal(return_code::badArgument);
        auto options = postCodes_.options();
        options.*option = request.*wanted == 1;
        postCodes_.setOptions(options);
    });
}

} // namespace TAVO::simulator
