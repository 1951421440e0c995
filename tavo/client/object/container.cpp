#include <tavo/client/object/container.h>

#include <stdexcept>
#include <string_view>
#include <utility>

#include <tavo/client/object/internal/name_path.h>
#include <tavo/client/object/object.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/internal/readable_name.h>

namespace TAVO {

namespace {

template <class Children>
std::string childList(const Children& children) {
    constexpr std::size_t mostNames = 20;
    std::string list;
    std::size_t listed = 0;
    for (const auto& [name, child] : children) {
        if (listed == mostNames)
            return list + " and " + std::to_string(children.size() - listed) + " more";
        list += (listed++ == 0 ? "" : ", ") + name;
    }
    return list.empty() ? "no members" : list;
}

std::string ownName(const Container& container) {
    const auto name = container.getFullName();
    return name.empty() ? "the device" : name;
}

/// The call that registers the factory of a proxy class. The namespace of the class tells which one.
std::string registeringCall(std::string_view proxyClass) {
    for (const std::string_view group : {"CommonModules::CommonModulesObjects", "TAVO::HWDebug::HwdObjects"})
        if (proxyClass.starts_with(group.substr(0, group.rfind(':') + 1)))
            return "call " + std::string(group) + "::registerCoreObjects()";
    return "construct the factory of its type";
}

std::string wrongClass(const std::string& path, const Container& node, const std::string& desired) {
    const auto* object = dynamic_cast<const Object_v1_0*>(&node);
    if (object && typeid(node) == typeid(Object_v1_0))
        return path + " is a plain object of type " + object->knownType() + ", no " + desired +
               ": its type had no factory when the device was opened; " + registeringCall(desired) +
               " before";
    return path + " is a " + readableName(typeid(node)) + ", no " + desired;
}

} // namespace

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

std::shared_ptr<Container> Container::find(const std::string& path) const {
    if (auto child = getChild(path))
        return child;
    for (auto end = path.find(SEPARATOR); end != std::string::npos; end = path.find(SEPARATOR, end + 1))
        if (const auto child = getChild(path.substr(0, end)))
            if (auto found = child->find(path.substr(end + SEPARATOR.size())))
                return found;
    return nullptr;
}

void Container::refuse(const std::string& path, const Container* node, const std::type_info& desired) const {
    if (node)
        throw SpecificationError(wrongClass(path, *node, readableName(desired)));
    const Container* last = this;
    std::string way;
    for (auto end = path.find(SEPARATOR); end != std::string::npos; end = path.find(SEPARATOR, end + 1))
        if (const auto there = find(path.substr(0, end))) {
            last = there.get();
            way = path.substr(0, end);
        }
    throw SpecificationError("There is no object " + path + ": " + (way.empty() ? ownName(*this) : way) +
                             " has " + childList(last->children_));
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
