#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

#include <nlohmann/json.hpp>

#include <tavo/simulator/topology.h>
#include <tavo/trace/tcp_writer.h>
#include <tests/cli/attack/verbs.h>
#include <tests/fuzz/method_choice.h>
#include <tests/fuzz/opening_script.h>
#include <tests/fuzz/request_script.h>
#include <tests/support/all_types.h>
#include <tests/support/golden_vectors.h>
#include <tests/support/wire_bytes.h>

// Writes the inputs that the fuzzers start from, made from the hand-written bytes of tests/golden and from
// the documents: tavo_fuzz_seeds FOLDER makes FOLDER/fuzz_<target>/<seed>.

namespace {

using fuzz::Bytes;
using fuzz::InputWriter;
using support::GoldenVector;

class Seeds {
public:
    explicit Seeds(std::filesystem::path folder)
        : folder_(std::move(folder)) {}

    void add(const std::string& target, const Bytes& seed) {
        std::filesystem::create_directories(folder_ / target);
        std::ofstream out(folder_ / target / std::to_string(++count_), std::ios::binary);
        out.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
        if (!out.flush())
            throw std::runtime_error("cannot write to " + folder_.string());
    }
    void add(const std::string& target, const std::string& seed) {
        add(target, Bytes(seed.begin(), seed.end()));
    }

private:
    std::filesystem::path folder_;
    unsigned count_ = 0;
};

using Visitor = std::function<void(const support::GoldenFile&, const GoldenVector&)>;

void forEachGolden(const Visitor& visit) {
    for (const auto& name : support::goldenFileNames()) {
        const auto file = support::loadGoldenFile(name);
        for (const auto& vector : file.vectors)
            visit(file, vector);
    }
}

std::size_t rowNumber(const support::GoldenFile& file, const GoldenVector& vector) {
    const auto name = file.type + " " + file.version + " " + vector.method;
    const auto& rows = fuzz::allRows();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.name() == name; });
    if (found == rows.end())
        throw std::runtime_error("no method " + name);
    return static_cast<std::size_t>(found - rows.begin());
}

void addDecoders(Seeds& seeds) {
    forEachGolden([&](const auto& file, const auto& vector) {
        const auto row = rowNumber(file, vector);
        if (vector.reply)
            seeds.add("fuzz_decoders", InputWriter().word(row).byte(0).raw(vector.reply->bytes).bytes);
        if (vector.request)
            seeds.add("fuzz_decoders", InputWriter().word(row).byte(1).raw(vector.request->bytes).bytes);
    });
}

void addExchanges(Seeds& seeds) {
    InputWriter batch;
    Bytes results;
    std::vector<std::size_t> rows;
    forEachGolden([&](const auto& file, const auto& vector) {
        if (!vector.reply)
            return;
        const auto row = rowNumber(file, vector);
        seeds.add("fuzz_exchange",
                  InputWriter().byte(1).word(row).raw(support::replyWith({vector.reply->bytes})).bytes);
        rows.push_back(row);
        results = support::joined({results, support::block(vector.reply->bytes)});
        if (rows.size() < 5)
            return;
        InputWriter several;
        several.byte(rows.size());
        for (const auto number : rows)
            several.word(number);
        seeds.add(
            "fuzz_exchange",
            several.raw(support::joined({support::u32(0), support::u32(0), support::u32(5), results})).bytes);
        rows.clear();
        results.clear();
    });
    seeds.add("fuzz_exchange", InputWriter().byte(0).raw(support::replyWith({})).bytes);
    for (std::uint32_t code = 999; code <= 1014; ++code)
        seeds.add("fuzz_exchange",
                  InputWriter().byte(2).word(0).word(1).raw(support::errorReply(code, "fault")).bytes);
}

void addOpenings(Seeds& seeds) {
    using Script = fuzz::OpeningScript;
    const auto named = TAVO::simulator::topologies().size();
    for (std::size_t topology = 0; topology < fuzz::topologies().size(); ++topology) {
        seeds.add("fuzz_opening", InputWriter().byte(topology).bytes);
        if (topology < named)
            continue;
        for (const auto step : {Script::overwritten, Script::cut})
            for (std::size_t honest = 0; honest < 30; honest += 7) {
                InputWriter script;
                script.byte(topology).byte(Script::honest).byte(honest).byte(step).word(16);
                if (step == Script::overwritten)
                    script.block(Bytes{0, 0, 0, 1});
                seeds.add("fuzz_opening", script.bytes);
            }
    }
    forEachGolden([&](const auto& file, const auto& vector) {
        if (!vector.reply || (file.type != "base" && file.type != "device"))
            return;
        for (const std::size_t honest : {0u, 1u, 3u, 9u}) {
            const auto whole = support::replyWith({vector.reply->bytes});
            seeds.add("fuzz_opening", InputWriter()
                                          .byte(0)
                                          .byte(Script::honest)
                                          .byte(honest)
                                          .byte(Script::result)
                                          .block(vector.reply->bytes)
                                          .byte(Script::whole)
                                          .block(whole)
                                          .bytes);
        }
    });
}

/// One call of that method, by a client that has switched on the board.
void addRequest(Seeds& seeds, std::size_t topology, const std::vector<fuzz::ListedMethod>& methods,
                const std::string& type, const std::string& version, const GoldenVector& vector) {
    using Script = fuzz::RequestScript;
    const auto number = [&](const auto& isWanted) {
        return static_cast<std::size_t>(std::find_if(methods.begin(), methods.end(), isWanted) -
                                        methods.begin());
    };
    const auto power =
        number([](const auto& method) { return method.type == "relay" && method.name == "set"; });
    const auto wanted = number([&](const auto& method) {
        return method.name == vector.method && method.type == type && method.version == version;
    });
    if (wanted == methods.size())
        return;
    InputWriter script;
    script.byte(topology).byte(Script::call).byte(Script::none).word(power).block(Bytes{1});
    script.byte(Script::call).byte(Script::none).word(wanted).block(vector.request->bytes);
    seeds.add("fuzz_simulator_request", script.bytes);
}

void addRequests(Seeds& seeds) {
    using Script = fuzz::RequestScript;
    for (auto topology = TAVO::simulator::topologies().size(); topology < fuzz::topologies().size();
         ++topology) {
        fuzz::MemoryAppliance appliance(fuzz::topologyNumber(topology));
        const auto methods = fuzz::listMethods(appliance);
        const auto& own = fuzz::topologyNumber(topology).name;
        forEachGolden([&](const auto& file, const auto& vector) {
            const bool fixed = own == "base" && (file.type == "device" || file.type == "system");
            if (vector.request && (file.type == own || fixed))
                addRequest(seeds, topology, methods, file.type, file.version, vector);
        });
    }
    const auto lock = support::joined(
        {support::u32(0), support::u32(1), support::u32(0), support::u32(3), support::u32(0)});
    seeds.add("fuzz_simulator_request", InputWriter().byte(0).byte(Script::raw).block(lock).bytes);
    seeds.add(
        "fuzz_simulator_request",
        InputWriter().byte(0).byte(Script::raw).block(support::u32(0)).byte(Script::raw).block(lock).bytes);
}

std::string fieldText(const nlohmann::json& value) {
    if (value.is_object() && value.size() == 1 && value.contains("hex"))
        return value["hex"].get<std::string>();
    return "'" + (value.is_string() ? value.get<std::string>() : value.dump()) + "'";
}

void addBatches(Seeds& seeds) {
    fuzz::MemoryAppliance appliance(fuzz::topologyNumber(0));
    std::string all;
    forEachGolden([&](const auto& file, const auto& vector) {
        if (!vector.request)
            return;
        for (const auto& [id, object] : appliance.appliance().objects()) {
            if (object->type() != file.type && !(file.type == "base" && object->type() == "relay"))
                continue;
            auto line = object->fullName() + "." + vector.method;
            if (!vector.request->record.is_null())
                for (const auto& [name, value] : vector.request->record.items())
                    line += " " + name + "=" + fieldText(value);
            seeds.add("fuzz_batch_file", line + "\n");
            all += line + "  # a remark\r\n\n";
            break;
        }
    });
    seeds.add("fuzz_batch_file", all.substr(0, 4000));
    seeds.add("fuzz_batch_file",
              std::string("\"power\".set state=0x1 # \\\n'i2c'.write data=\"00 \\\" ff\"\n"));
}

Bytes callSeed(unsigned form, const nlohmann::json& text, const std::vector<Bytes>& blocks = {}) {
    InputWriter input;
    input.byte(form | blocks.size() << 2);
    for (const auto& block : blocks)
        input.block(block);
    const auto written = text.dump();
    return input.raw(Bytes(written.begin(), written.end())).bytes;
}

void addCalls(Seeds& seeds) {
    using Json = nlohmann::json;
    fuzz::MemoryAppliance appliance(fuzz::topologyNumber(0));
    auto all = Json::array();
    forEachGolden([&](const auto& file, const auto& vector) {
        if (!vector.request)
            return;
        for (const auto& [id, object] : appliance.appliance().objects()) {
            if (object->type() != file.type && !(file.type == "base" && object->type() == "relay"))
                continue;
            Json call{{"object", object->fullName()}, {"method", vector.method}};
            if (!vector.request->record.is_null())
                call["arguments"] = vector.request->record;
            seeds.add("fuzz_c_calls", callSeed(0, call));
            if (all.size() < 8)
                all.push_back(call);
            break;
        }
    });
    for (const unsigned form : {1U, 3U})
        seeds.add("fuzz_c_calls", callSeed(form, all));
    const auto shift = [](const Json& data) {
        return Json{
            {"object", "cpu0.jtag"}, {"method", "shiftDR"}, {"arguments", {{"bits", 32}, {"data", data}}}};
    };
    const std::vector<Bytes> blocks{{0xDE, 0xAD, 0xBE, 0xEF}, Bytes(40)};
    for (const unsigned form : {0U, 2U}) {
        seeds.add("fuzz_c_calls", callSeed(form, shift({{"hex", "deadbeef"}})));
        seeds.add("fuzz_c_calls", callSeed(form, shift({{"block", 0}}), blocks));
        seeds.add("fuzz_c_calls",
                  callSeed(form | 1, {shift({{"block", 0}}), shift({{"block", 1}}), shift({{"block", 2}})},
                           blocks));
    }
    seeds.add("fuzz_c_calls", callSeed(0, {{"object", {{"hex-text", "706f776572"}}}, {"method", "get"}}));
    seeds.add("fuzz_c_calls", callSeed(1, Json::array()));
}

std::string contentOf(const std::string& path) {
    std::ifstream in(std::filesystem::path(TAVO_SOURCE_DIR) / path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(in), {}};
    if (content.empty())
        throw std::runtime_error(path + " cannot be read");
    return content;
}

void addServerKeys(Seeds& seeds) {
    const auto development = contentOf("tavo/client/exchange/development_server_keys.txt");
    const auto keys = development.substr(development.find("0 0 "));
    seeds.add("fuzz_server_keys", development);
    seeds.add("fuzz_server_keys", keys);
    for (const std::string place : {"\n", "0 0 ", "1 1 "})
        for (const std::string odd : {"\r", "\t", ";", "[", "]", "\\", "\"", "$", "@", "#", "\xc3\xa4"}) {
            auto changed = keys;
            seeds.add("fuzz_server_keys", changed.insert(changed.find(place), odd));
        }
    seeds.add("fuzz_server_keys", keys.substr(0, keys.size() - 1));
    seeds.add("fuzz_server_keys", keys + keys);
    seeds.add("fuzz_server_keys", keys + std::string(1, '\0') + "\n");
}

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

/// The words of the tool's command lines in its document.
void addArguments(Seeds& seeds) {
    std::istringstream document(contentOf("docs/tool.md"));
    for (std::string line; std::getline(document, line);)
        for (std::size_t at = line.find("tavo "); at != std::string::npos; at = line.find("tavo ", at + 1)) {
            std::istringstream words(line.substr(at + 5, line.find_first_of("`|#>", at) - at - 5));
            std::string arguments;
            for (std::string word; words >> word;)
                arguments += (arguments.empty() ? "" : std::string(1, '\0')) + word;
            seeds.add("fuzz_tool_arguments", arguments);
            seeds.add("fuzz_tool_arguments", std::string("--sim") + '\0' + arguments);
        }
}

void addTopologies(Seeds& seeds) {
    const auto document = contentOf("docs/simulator-topologies.md");
    const auto begin = document.find("```json\n") + 8;
    seeds.add("fuzz_topology", document.substr(begin, document.find("```", begin) - begin));
    std::vector<std::string> types{"of-my-own"};
    for (const auto& table : support::allTables())
        types.emplace_back(table.type);
    for (const auto& type : types)
        for (const std::string version : {"1.0", "1.1"})
            seeds.add("fuzz_topology", R"({"name": "t", "objects": [{"name": "o", "type": ")" + type +
                                           R"(", "version": ")" + version + R"("}]})");
}

/// For each verb one of the last replies, each spoilt in another way.
void addConfigs(Seeds& seeds) {
    const auto document = contentOf("docs/tool-devices.md");
    const auto begin = document.find("```toml\n") + 8;
    seeds.add("fuzz_config", document.substr(begin, document.find("```", begin) - begin));
    for (const auto* line :
         {"host = \"[::1]:7000\"", "port = 0x1900", "password-file = \"~/p\"", "secure = false",
          "timeout = \"500ms\"", "timeout = 2.5", "via = 'ssh gate -W %h:%p'", "group = [\"a\", \"b\"]",
          "password = \"secret\"", "[lab2.x]", "user = \"\\u00fc\""})
        seeds.add("fuzz_config", std::string("[lab1]\n") + line + "\n");
}

void addToolReplies(Seeds& seeds) {
    const auto count = attack::verbs("").size();
    for (std::size_t verb = 0; verb < count; ++verb) {
        InputWriter input;
        input.byte(verb).byte(verb / 2).word(1 + verb % 5);
        for (std::size_t i = 0; i < 40; ++i)
            input.byte(verb + 37 * i);
        seeds.add("fuzz_tool_replies", input.bytes);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: tavo_fuzz_seeds FOLDER\n";
        return 2;
    }
    try {
        Seeds seeds(argv[1]);
        addDecoders(seeds);
        addExchanges(seeds);
        addOpenings(seeds);
        addRequests(seeds);
        addBatches(seeds);
        addCalls(seeds);
        addServerKeys(seeds);
        addSvf(seeds);
        addCables(seeds);
        addComPort(seeds);
        addSerprog(seeds);
        addTraces(seeds);
        addArguments(seeds);
        addTopologies(seeds);
        addConfigs(seeds);
        addToolReplies(seeds);
    } catch (const std::exception& error) {
        std::cerr << "tavo_fuzz_seeds: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
