#include <tavo/simulator/models/lcd.h>

#include <algorithm>

namespace TAVO::simulator {

Lcd::Lcd() { clear(); }

bool Lcd::print(std::int32_t row, std::int32_t column, const std::string& text) {
    if (row < 0 || row >= rowCount || column < 0 || column >= columnCount)
        return false;
    auto& line = rows_[static_cast<std::size_t>(row)];
    const auto length = std::min(text.size(), static_cast<std::size_t>(columnCount - column));
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), line.begin() + column,
                   [](char character) { return character >= ' ' && character <= '~' ? character : '?'; });
    return true;
}

void Lcd::clear() { rows_.fill(std::string(columnCount, ' ')); }

bool Lcd::setBackLight(std::int32_t percent) {
    if (percent < 0 || percent > 100)
        return false;
    backLight_ = percent;
    return true;
}

std::string Lcd::toString() const {
    std::string text;
    for (const auto& row : rows_)
        text += row + "\n";
    return text + "backlight=" + std::to_string(backLight_);
}

} // namespace TAVO::simulator
