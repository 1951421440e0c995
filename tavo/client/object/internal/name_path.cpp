#include <tavo/client/object/internal/name_path.h>

#include <string_view>

namespace TAVO {

namespace {

// The value of Container::SEPARATOR, which may be destroyed before the last device.
constexpr std::string_view separator = ".";

} // namespace

NamePath::~NamePath() {
    // One by one: if each path destroyed its parent's, a deep tree would exhaust the stack.
    auto next = std::move(parent_);
    while (next && next.use_count() == 1)
        next = std::exchange(next->parent_, nullptr);
}

std::string NamePath::joined() const {
    std::size_t size = name_.size();
    for (const auto* path = parent_.get(); path; path = path->parent_.get())
        size += path->name_.size() + separator.size();

    std::string text(size, '\0');
    auto end = size;
    const auto putInFront = [&](std::string_view part) {
        end -= part.size();
        text.replace(end, part.size(), part);
    };
    putInFront(name_);
    for (const auto* path = parent_.get(); path; path = path->parent_.get()) {
        putInFront(separator);
        putInFront(path->name_);
    }
    return text;
}

} // namespace TAVO
