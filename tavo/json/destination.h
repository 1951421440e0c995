#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace TAVO::json {

/// Where a JsonWriter writes to.
class Destination {
public:
    virtual void write(std::string_view bytes) = 0;

protected:
    Destination() = default;
    Destination(const Destination&) = default;
    Destination& operator=(const Destination&) = default;
    ~Destination() = default;
};

/// Keeps what is written.
class TextDestination final : public Destination {
public:
    void write(std::string_view bytes) override { text_ += bytes; }
    /// What was written so far; the destination is empty afterwards.
    std::string take() { return std::exchange(text_, {}); }

private:
    std::string text_;
};

} // namespace TAVO::json
