#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// A character display with a backlight.
class TAVO_SIMULATOR_API Lcd {
public:
    static constexpr std::int32_t rowCount = 2;
    static constexpr std::int32_t columnCount = 16;

    Lcd();

    /// Writes from this position, at most to the end of the row. Bytes other than printable ASCII become '?'.
    /// Returns false and writes nothing if the position is outside the display.
    bool print(std::int32_t row, std::int32_t column, const std::string& text);
    /// Fills the display with blanks.
    void clear();

    /// In percent.
    std::int32_t backLight() const noexcept { return backLight_; }
    /// Returns false unless 0 to 100.
    bool setBackLight(std::int32_t percent);

    /// The 16 characters of a row.
    /// @throws std::out_of_range if there is no such row.
    const std::string& row(std::size_t index) const { return rows_.at(index); }
    /// Both rows and "backlight=N", joined by line feeds.
    std::string toString() const;

private:
    std::array<std::string, rowCount> rows_;
    std::int32_t backLight_ = 100;
};

} // namespace TAVO::simulator
