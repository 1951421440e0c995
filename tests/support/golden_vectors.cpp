#include <tests/support/golden_vectors.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include <tests/support/wire_bytes.h>

namespace support {

namespace {

using nlohmann::json;

const std::filesystem::path folder = TAVO_SOURCE_DIR "/tests/golden";

constexpr std::array<std::string_view, 7> knownKeys{
    "method", "name", "request", "request_bytes", "reply", "reply_bytes", "written_reply_bytes"};

// A string, or an array of strings that stand one behind the other.
std::vector<std::uint8_t> bytesIn(const json& hex) {
    if (hex.is_string())
        return bytesFromHex(hex.get<std::string>());
    std::string all;
    for (const auto& line : hex)
        all += line.get<std::string>() + " ";
    return bytesFromHex(all);
}

GoldenVector vectorIn(const json& entry) {
    for (const auto& [key, value] : entry.items())
        if (std::find(knownKeys.begin(), knownKeys.end(), key) == knownKeys.end())
            throw std::invalid_argument("unknown key '" + key + "'");
    GoldenVector vector{entry.at("method").get<std::string>(), entry.at("name").get<std::string>(), {}, {}};
    if (entry.contains("request"))
        vector.request = GoldenRequest{entry.at("request"), bytesIn(entry.at("request_bytes"))};
    if (entry.contains("reply")) {
        const auto& reply = entry.at("reply");
        const auto bytes = bytesIn(entry.at("reply_bytes"));
        const bool differs = entry.contains("written_reply_bytes");
        vector.reply = GoldenReply{reply.at("code").get<std::int32_t>(), reply.at("record"), bytes,
                                   differs ? bytesIn(entry.at("written_reply_bytes")) : bytes};
    }
    if (!vector.request && !vector.reply)
        throw std::invalid_argument("neither a request nor a reply");
    return vector;
}

} // namespace

std::vector<std::string> goldenFileNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".json")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

GoldenFile loadGoldenFile(const std::string& name) {
    std::ifstream stream(folder / (name + ".json"));
    const auto content = json::parse(stream);
    GoldenFile file{content.at("type").get<std::string>(), content.at("version").get<std::string>(), {}};
    for (const auto& entry : content.at("vectors")) {
        try {
            file.vectors.push_back(vectorIn(entry));
        } catch (const std::exception& error) {
            throw std::runtime_error(name + ": " + entry.dump() + ": " + error.what());
        }
    }
    return file;
}

std::vector<std::string> goldenMethods(const std::string& type, const std::string& version) {
    std::vector<std::string> methods;
    for (const auto& name : goldenFileNames()) {
        const auto file = loadGoldenFile(name);
        if (file.type != type || file.version != version)
            continue;
        for (const auto& vector : file.vectors)
            if (std::find(methods.begin(), methods.end(), vector.method) == methods.end())
                methods.push_back(vector.method);
    }
    return methods;
}

} // namespace support
