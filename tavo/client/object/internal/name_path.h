#pragma once

#include <memory>
#include <string>
#include <utility>

namespace TAVO {

/// A node's name behind its parent's path. Nodes share the paths of their parents, so that a long name high
/// up is held once, and a path outlives the nodes that it leads through. Never changed once it is made.
class NamePath {
public:
    NamePath(std::shared_ptr<const NamePath> parent, std::string name)
        : parent_(std::move(parent))
        , name_(std::move(name)) {}
    NamePath(const NamePath&) = delete;
    NamePath& operator=(const NamePath&) = delete;
    ~NamePath();

    const std::string& name() const { return name_; }
    /// All names from the root, joined by Container::SEPARATOR.
    std::string joined() const;
    /// The same with one more name behind them.
    std::string joinedWith(const std::string& last) const;

private:
    std::string joinedWithin(std::size_t spareRoom) const;

    mutable std::shared_ptr<const NamePath> parent_;
    std::string name_;
};

} // namespace TAVO
