#include <tests/support/golden_vectors.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include <tavo/cli/json_value.h>

namespace support {

namespace {

using nlohmann::json;

constexpr std::array<std::string_view, 7> knownKeys{
    "method", "name", "request", "request_bytes", "reply", "reply_bytes", "written_reply_bytes"};

// A string, or an array of strings that stand one behind the other.
std::vector<std::uint8_t> bytesIn(const json& hex) {
    if (hex.is_string())
        return TAVO::cli::bytesFromHex(hex.get<std::string>());
    std::string all;
    for (const auto& line : hex)
        all += line.get<std::string>() + " ";
    return TAVO::cli::bytesFromHex(all);
}

GoldenVector vectorIn(const json& file, const json& entry) {
    for (const auto& [key, value] : entry.items())
        if (std::find(knownKeys.begin(), knownKeys.end(), key) == knownKeys.end())
            throw std::invalid_argument("unknown key '" + key + "'");
    GoldenVector vector{file.at("type").get<std::string>(),
                        file.at("version").get<std::string>(),
                        entry.at("method").get<std::string>(),
                        entry.at("name").get<std::string>(),
                        {},
                        {}};
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

void PrintTo(const GoldenVector& vector, std::ostream* out) {
    *out << vector.type << " " << vector.version << " " << vector.method << ": " << vector.name;
}

std::vector<GoldenVector> loadGoldenVectors() {
    std::vector<GoldenVector> vectors;
    for (const auto& entry : std::filesystem::directory_iterator(TAVO_SOURCE_DIR "/tests/golden")) {
        if (entry.path().extension() != ".json")
            continue;
        std::ifstream stream(entry.path());
        const auto file = json::parse(stream);
        for (const auto& vector : file.at("vectors")) {
            try {
                vectors.push_back(vectorIn(file, vector));
            } catch (const std::exception& error) {
                throw std::runtime_error(entry.path().string() + ": " + vector.dump() + ": " + error.what());
            }
        }
    }
    return vectors;
}

} // namespace support
