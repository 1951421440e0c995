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
#include <tests/cli/attack/verbs.h>
#include <tests/fuzz/method_choice.h>
#include <tests/fuzz/opening_script.h>
#include <tests/fuzz/request_script.h>
#include <tests/fuzz/seeds.h>
#include <tests/support/all_types.h>
#include <tests/support/golden_vectors.h>
#include <tests/support/wire_bytes.h>

// Writes the inputs that the fuzzers start from, made from the hand-written bytes of tests/golden and from
// the documents: tavo_fuzz_seeds FOLDER makes FOLDER/fuzz_<target>/<seed>.

namespace {

using fuzz::Bytes;
using fuzz::InputWriter;
using fuzz::Seeds;
using support::GoldenVector;

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
        fuzz::addDoors(seeds);
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
