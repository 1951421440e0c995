#include <tavo/client/object/container.h>

#include <utility>

#include <tavo/client/object/object.h>

namespace TAVO {

const std::string Container::SEPARATOR = ".";

Container::Container(const std::string& name, std::shared_ptr<Container> parent)
    : name_(name)
    , parent_(parent)
    , fullName_(parent ? parent->fullName_ + SEPARATOR + name : name) {}

Container::~Container() = default;

void Container::initalize() {}

void Container::addChild(std::shared_ptr<Container> child) {
    auto& slot = children_[child->name_];
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

std::string Container::toString() const { return fullName_.empty() ? name_ : name_ + "(" + fullName_ + ")"; }

} // namespace TAVO
