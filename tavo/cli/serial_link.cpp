#include <tavo/cli/serial_link.h>

#include <algorithm>

namespace TAVO::cli {

bool TextWatch::sees(std::string_view bytes) {
    if (seen_ || wanted_.empty())
        return seen_;
    end_ += bytes;
    seen_ = end_.find(wanted_) != std::string::npos;
    end_.erase(0, end_.size() - std::min(end_.size(), wanted_.size() - 1));
    return seen_;
}

} // namespace TAVO::cli
