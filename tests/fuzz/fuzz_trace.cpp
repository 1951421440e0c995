#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <tavo/cli/session.h>
#include <tavo/trace/blanker.h>
#include <tavo/trace/capture.h>
#include <tavo/trace/difference.h>
#include <tests/fuzz/fuzz_input.h>

// Captures, and what passes over one connection. Input: a byte; if it is 0 a pcapng file follows, otherwise
// pieces of a conversation: a byte whose highest bit is the direction and whose others are the length, and
// that many bytes.

namespace {

using fuzz::require;
using namespace TAVO::trace;

void checkExchange(const Exchange& exchange, const Names& names, std::size_t length) {
    std::size_t bytes = 0;
    for (const auto& call : exchange.calls) {
        bytes += call.parameters.size() + call.result.size();
        require(call.parameters.size() <= call.parameterSize, "no more parameters than announced");
        require(call.result.size() <= call.resultSize, "no more of a result than announced");
        require(!names.nameOf(call.id).empty(), "every call has a name");
        static_cast<void>(names.row(call.id));
    }
    require(bytes <= length, "calls have no more bytes than the file");
}

void readFile(const std::string& file) {
    std::istringstream in(file);
    Capture capture({}, 1 << 20, [&](const Exchange& exchange, const Names& names) {
        checkExchange(exchange, names, file.size());
    });
    try {
        capture.read(in);
    } catch (const FormatError&) { // refused
    }
}

void readPieces(std::span<const std::uint8_t> input) {
    Names names;
    Blanker blanker(names);
    Names ofRecorder;
    const auto length = input.size();
    ExchangeRecorder recorder(0, ofRecorder, 1 << 20, [&](const Exchange& exchange, const Names& learnt) {
        checkExchange(exchange, learnt, length);
    });
    while (!input.empty()) {
        const bool isReply = (input[0] & 0x80) != 0;
        const std::size_t wanted = input[0] & 0x7F;
        const auto piece = input.subspan(1, std::min(wanted, input.size() - 1));
        input = input.subspan(1 + piece.size());
        std::vector<std::uint8_t> blanked(piece.begin(), piece.end());
        if (isReply)
            blanker.received(blanked);
        else
            blanker.sent(blanked);
        for (std::size_t i = 0; i < piece.size(); ++i)
            require(blanked[i] == piece[i] || blanked[i] == blank, "a byte stays or is blanked");
        try {
            if (isReply)
                recorder.received(piece, {});
            else
                recorder.sent(piece, {});
        } catch (const std::runtime_error&) {
            break;
        }
    }
    recorder.finish();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    [[maybe_unused]] static const bool isRegistered = (TAVO::cli::registerObjects(), true);
    if (length == 0)
        return 0;
    if (bytes[0] == 0)
        readFile({bytes + 1, bytes + length});
    else
        readPieces({bytes + 1, length - 1});
    return 0;
}
