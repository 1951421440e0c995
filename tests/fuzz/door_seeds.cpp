#include <cstdint>
#include <string>
#include <vector>

#include <tavo/trace/tcp_writer.h>
#include <tests/fuzz/seeds.h>
#include <tests/support/wire_bytes.h>

namespace fuzz {

namespace {

void addSvf(Seeds& seeds) {
    for (const std::string text : {
             "! remark\nTRST OFF;\r\nENDIR IDLE; ENDDR DRPAUSE;\nFREQUENCY 1.00E+06 HZ;\nFREQUENCY;\n",
             "HIR 3 TDI (7);\nTIR 0;\nHDR 1 TDI (0) TDO (1) MASK (1);\nSIR 8 TDI (FE) SMASK (FF);\n",
             "SDR 32 TDI (0000\n0000) TDO (F362D093) MASK (0FFFFFFF); // remark\nSDR 32 TDO (1);\nSDR 33 TDI "
             "(1);",
             "RUNTEST 100 TCK;\nRUNTEST DRPAUSE 5 TCK 1.0E-3 SEC MAXIMUM 2.5 SEC ENDSTATE IDLE;\n",
             "RUNTEST RESET 20 TCK 1E-3 SEC;RUNTEST .2 SEC ENDSTATE IRPAUSE;",
             "STATE RESET; STATE DRPAUSE; STATE DREXIT2 DRSHIFT DREXIT1 DRUPDATE IDLE; STATE IDLE IDLE;",
             "TRST ON; TRST Z; TRST ABSENT; STATE IDLE;",
             "PIOMAP (IN A OUT B);\nPIO (HL);\n",
             "sdr 4 tdi (5) tdo (a);;sdr 4;runtest 1 sck;",
             "\xef\xbb\xbfSTATE IDLE;\r\n\x1a",
         })
        seeds.add("fuzz_svf", text);
}

/// What clients of cables send, in one piece and in pieces of a few bytes.
void addCableTalk(Seeds& seeds, const std::string& target, const std::string& talk) {
    for (const std::size_t size : {talk.size(), std::size_t{3}})
        for (const std::size_t pause : {0u, 20u}) {
            InputWriter input;
            for (std::size_t at = 0; at < talk.size(); at += size) {
                const auto piece = talk.substr(at, size);
                input.block(Bytes(piece.begin(), piece.end())).byte(pause);
            }
            seeds.add(target, input.bytes);
        }
}

void addCables(Seeds& seeds) {
    for (const std::string talk : {
             "B2626262626b04R04R26R26R04R04R15R15R37R26R04",
             "040R42R60R40R40R51R51R73R6R2R04Q",
             "r26262626040426260404s15R15Rt04u04r",
             "RRRR0R4R0R4RR0RRR\nO7cdefg?",
         })
        addCableTalk(seeds, "fuzz_remote_bitbang", talk);
    using namespace std::string_literals;
    const auto shift = [](char bits, const std::string& tms, const std::string& tdi) {
        return std::string("shift:") + bits + std::string(3, '\0') + tms + tdi;
    };
    for (const std::string& talk : {
             std::string("getinfo:settck:") + "\x64" + std::string(3, '\0') + shift(5, "\x1f", "\x1f"),
             shift(12, "\x06\x08"s, "\xa5\x02") + shift(6, "\x03"s, "\0"s) +
                 shift(32, "\0\0\0\x80"s, "abcd"s),
             shift(8, "\x0d", "\xff") + "getinfo:" + shift(3, "\x01", "\x02") + "getinto:",
             std::string("shift:\xff\xff\xff\xff"),
         })
        addCableTalk(seeds, "fuzz_xvc", talk);
}

/// What a client says when it opens, uses and closes a port.
void addComPort(Seeds& seeds) {
    const Bytes opening{255, 253, 1,   255, 251, 3,   255, 253, 3,   255, 253, 44,  255, 251,
                        44,  255, 250, 44,  1,   0,   0,   37,  128, 255, 240, 255, 250, 44,
                        2,   7,   255, 240, 255, 250, 44,  3,   3,   255, 240, 255, 250, 44,
                        4,   2,   255, 240, 255, 250, 44,  5,   2,   255, 240};
    const Bytes use{'v', 255, 255, 13,  255, 250, 44,  5,   5,   255, 240, 255, 243, 255, 250, 44,
                    12,  3,   255, 240, 255, 250, 44,  8,   255, 240, 'x', 255, 250, 44,  9,   255,
                    240, 255, 250, 44,  0,   255, 240, 255, 250, 44,  11,  255, 255, 255, 240, 255,
                    250, 44,  7,   255, 240, 255, 250, 24,  1,   255, 240, 255, 252, 44};
    for (const std::size_t piece : {std::size_t{1}, std::size_t{5}, std::size_t{200}}) {
        seeds.add("fuzz_rfc2217", fuzz::InputWriter().byte(piece).raw(opening).bytes);
        seeds.add("fuzz_rfc2217", fuzz::InputWriter().byte(piece).raw(use).bytes);
        seeds.add("fuzz_rfc2217", fuzz::InputWriter().byte(piece).raw(opening).raw(use).bytes);
    }
}

/// Sessions of a programmer's client: what it asks first, then operations, then the end.
void addSerprog(Seeds& seeds) {
    const Bytes opening{0x00, 0x10, 0x01, 0x02, 0x03, 0x04, 0x05, 0x08, 0x11,
                        0x12, 0x08, 0x14, 0x00, 0x12, 0x7A, 0x00, 0x15, 0x01};
    const auto operation = [](const Bytes& sent, std::size_t length) {
        return InputWriter().byte(0x13).byte(sent.size()).word(0).byte(length).word(0).raw(sent).bytes;
    };
    const auto enable = operation({0x06}, 0);
    const auto status = operation({0x05}, 1);
    seeds.add("fuzz_serprog", support::joined({{0x00}, opening, operation({0x9F}, 3), {0x15, 0x00}}));
    const std::vector<Bytes> changes{
        {0x02, 0, 1, 0xFE, 1, 2, 3}, {0x20, 0, 0x10, 0}, {0x52, 0, 0x90, 0}, {0xD8, 0, 0, 0}, {0xC7},
        {0x01, 0x3C, 0x02}};
    for (const auto& change : changes)
        for (const std::uint8_t piece : Bytes{0, 6, 255})
            seeds.add("fuzz_serprog", support::joined({{piece},
                                                       enable,
                                                       operation(change, 0),
                                                       status,
                                                       operation({0x03, 0, 0x0F, 0xFC}, 8),
                                                       {0x15, 0x00}}));
    seeds.add("fuzz_serprog", support::joined({{9},
                                               operation({0x0B, 0, 0xFF, 0xFE, 0}, 4),
                                               operation({0x90, 0, 0, 1}, 3),
                                               operation({0xAB, 0, 0, 0}, 1)}));
    seeds.add("fuzz_serprog", Bytes{1, 0x13, 0x01, 0x00, 0x02, 0, 0, 0, 0x06});
    seeds.add("fuzz_serprog", Bytes{1, 0x13, 4, 0, 0, 0xFF, 0xFF, 0xFF, 0x03, 0, 0, 0, 0x00});
}

/// A question for the methods of the device, and an answer, as a capture and as pieces.
void addTraces(Seeds& seeds) {
    using TAVO::trace::TcpWriter;
    const std::vector<std::uint8_t> request{0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0};
    const std::vector<std::uint8_t> reply{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,   1,   0,   0,   0, 20, 0, 0,
                                          0, 0, 0, 0, 0, 1, 0, 0, 0, 4, 'l', 'o', 'c', 'k', 0, 0,  0, 9};
    std::string file(1, '\0');
    TAVO::trace::PcapngWriter writer(
        [&](std::span<const std::uint8_t> block) { file.append(block.begin(), block.end()); }, "seed",
        "device");
    TcpWriter connection(writer, 0, {});
    connection.data(TcpWriter::Side::client, request, {});
    connection.data(TcpWriter::Side::device, reply, {});
    connection.close({});
    seeds.add("fuzz_trace", file);
    std::string pieces{1, static_cast<char>(request.size())};
    pieces.append(request.begin(), request.end());
    pieces += static_cast<char>(0x80 | reply.size());
    pieces.append(reply.begin(), reply.end());
    seeds.add("fuzz_trace", pieces);
}

} // namespace

void addDoors(Seeds& seeds) {
    addSvf(seeds);
    addCables(seeds);
    addComPort(seeds);
    addSerprog(seeds);
    addTraces(seeds);
}

} // namespace fuzz
