#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace TAVO::cli {

/// Names for a message, separated by commas. A long list is cut off and ends with the number of names left
/// out.
class NameList {
public:
    void add(std::string_view name);
    std::size_t count() const { return count_; }
    std::string text() const;

private:
    std::string text_;
    std::size_t count_ = 0;
    std::size_t leftOut_ = 0;
};

} // namespace TAVO::cli
