#include <tavo/cli/values/name_list.h>

#include <fmt/format.h>

namespace TAVO::cli {

void NameList::add(std::string_view name) {
    constexpr std::size_t room = 65536;
    ++count_;
    if (leftOut_ > 0 || text_.size() + name.size() > room) {
        ++leftOut_;
        return;
    }
    text_ += text_.empty() ? "" : ", ";
    text_ += name;
}

std::string NameList::text() const {
    if (leftOut_ == 0)
        return text_;
    return fmt::format("{}{}{} more", text_, text_.empty() ? "" : ", and ", leftOut_);
}

} // namespace TAVO::cli
