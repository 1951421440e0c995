#include <tavo/client/object/container.h>

#include <stdexcept>
#include <utility>

#include <tavo/client/object/internal/name_path.h>
#include <tavo/client/object/object.h>

namespace TAVO {

Container::Container(const std::string& name, std::shared_ptr<Container> parent)
    : path_(std::make_shared<NamePath>(parent ? parent->path_ : nullptr, name))
    , parent_(parent) {}

Container::~Container() = default;

void Container::initalize() {}

std::string Container::getName() const { return path_->name(); }

std::string Container::getFullName() const { return path_->joined(); }

void Container::addChild(std::shared_ptr<Container> child) {
    if (!child)
        throw std::invalid_argument("Container::addChild got an empty pointer for a child of: " +
                                    getFullName());
    auto& slot = children_[child->path_->name()];
    slot = std::move(child);
}

std::shared_ptr<Container> Container::getChild(const std::string& name) const {
    const auto found = children_.find(name);
    return found == children_.end() ? nullptr : found->second;
}

std::vector<std::shared_ptr<Container>> Container::getChildren() const {
    std::vector<std::shared_ptr<Container>> children;
    for (const auto& [name, child] : children_)
        children.push_back(child);
    return children;
}

std::vector<std::shared_ptr<Container>> Container::getChildren(const std::string& type) const {
    std::vector<std::shared_ptr<Container>> children;
    for (const auto& [name, child] : children_)
        if (const auto object = std::dynamic_pointer_cast<Object_v1_0>(child);
            object && object->type() == type)
            children.push_back(child);
    return children;
}

std::string Container::toString() const {
    const auto fullName = getFullName();
    return fullName.empty() ? getName() : getName() + "(" + fullName + ")";
}

} // namespace TAVO
