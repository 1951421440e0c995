#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/cli/share/share_client.h>

namespace TAVO::cli {

/// Who called what, when, how long it took: one JSON document a line. Holds no parameters, so no secrets.
class ShareLog {
public:
    /// @param path where to add to; empty for no log.
    /// @throws Failure (usage) if it cannot be written.
    explicit ShareLog(const std::string& path);

    bool isOpen() const { return out_.is_open(); }
    void event(std::string_view what, nlohmann::json more = nlohmann::json::object());
    void request(const ShareClient& client, const Turn& turn, const std::vector<std::string>& calls,
                 bool wasAnswered);

private:
    std::ofstream out_;
};

} // namespace TAVO::cli
