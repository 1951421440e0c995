#pragma once

#include <memory>
#include <string>
#include <utility>

namespace TAVO {

/// A name, and the path of the parent. Nodes share the paths of their parents, so a long name high up is held
/// only once, and a path outlives the nodes that it leads through. Immutable.
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

private:
    mutable std::shared_ptr<const NamePath> parent_;
    std::string name_;
};

} // namespace TAVO
