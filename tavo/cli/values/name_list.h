#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace TAVO::cli {

/// Names for a message, with commas between them. A message has room for so many; of the others it tells how
/// many there are.
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
