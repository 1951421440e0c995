#include <tavo/simulator/models/tap_log.h>

#include <utility>

#include <tavo/simulator/internal/one_word.h>

namespace TAVO::simulator {

namespace {

constexpr std::size_t mostPieceBytes = std::size_t{1} << 16;

void writeNumber(const TapLog::Sink& sink, const PackedBits& bits) {
    std::string piece;
    for (auto digit = (bits.size() + 3) / 4; digit-- > 0;) {
        const auto byte = bits.bytes()[digit / 2];
        piece += hexDigits[digit % 2 == 0 ? byte & 0x0F : byte >> 4];
        if (piece.size() >= mostPieceBytes) {
            sink(piece);
            piece.clear();
        }
    }
    sink(piece);
}

} // namespace

TapLog::TapLog(std::string_view name, Sink sink, std::size_t mostBits)
    : name_(oneWord(name))
    , sink_(std::move(sink))
    , mostBits_(mostBits) {}

void TapLog::clock(TapState state, bool tms, bool tdi, bool tdo) {
    using enum TapState;
    if (state == captureDr || state == captureIr) {
        forget();
    } else if (state == shiftDr || state == shiftIr) {
        if (bits_ < mostBits_) {
            tdi_.append(tdi);
            tdo_.append(tdo);
        }
        ++bits_;
    }
    const auto next = nextState(state, tms);
    if (next == updateDr || next == updateIr)
        writeScan(next == updateIr ? "ir" : "dr");
    else if (next == testLogicReset && state != testLogicReset)
        writeReset();
}

void TapLog::trst(TapState state, bool level) {
    if (!level && state != TapState::testLogicReset)
        writeReset();
}

void TapLog::forget() {
    bits_ = 0;
    tdi_ = {};
    tdo_ = {};
}

void TapLog::writeScan(std::string_view target) {
    if (bits_ > 0) {
        sink_(name_ + " " + std::string(target) + " " + std::to_string(bits_) + " ");
        if (bits_ > mostBits_) {
            sink_("- -");
        } else {
            writeNumber(sink_, tdi_);
            sink_(" ");
            writeNumber(sink_, tdo_);
        }
        sink_("\n");
    }
    forget();
}

void TapLog::writeReset() {
    forget();
    sink_(name_ + " reset\n");
}

} // namespace TAVO::simulator
