#pragma once

#include <map>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include <tavo/client/export.h>

namespace TAVO {

class NamePath;

/// A node of the tree that mirrors the device's objects. Use it to find them: the Device itself is the root.
/// A node owns its children, and refers to its parent weakly.
///
/// @code
/// const auto lamp = device->get<CommonModules::Relay_v1_0>("bench.lamp");
/// @endcode
///
/// The tree is built when the device is opened and only read afterwards. It belongs to the device's thread.
/// Only operations that say so throw or call the device.
class TAVO_API Container {
public:
    /// Stands between the names of a full name: ".".
    static inline const std::string SEPARATOR = ".";

    /// A node without children.
    /// @param name   the name under which the parent lists this node.
    /// @param parent may be empty; the full name is then the name alone. Does not get the node as a child:
    ///        call addChild().
    Container(const std::string& name, std::shared_ptr<Container> parent);
    /// Copies share the children.
    Container(const Container&) = default;
    Container& operator=(const Container&) = default;
    virtual ~Container();

protected:
    /// A hook for proxies that need their children, such as a composite that keeps them. Called once on every
    /// node that ObjectFactory::buildObject makes, after its children have been added. What it throws
    /// abandons the build. (The spelling is the published one.)
    virtual void initalize();

public:
    /// The name under which the parent lists this node; empty for a Device.
    std::string getName() const;
    /// The names from the top of the tree to this node, joined by SEPARATOR. Does not change when nodes above
    /// are destroyed.
    std::string getFullName() const;
    /// The parent; empty for a node without one, and after the parent has been destroyed. Objects at the top
    /// of a device have none.
    std::shared_ptr<Container> getParent() const { return parent_.lock(); }

    /// Adds the child under its name, in place of an earlier child of that name.
    /// @throws std::invalid_argument for an empty pointer.
    void addChild(std::shared_ptr<Container> child);
    /// The child of exactly that name; empty when there is none.
    std::shared_ptr<Container> getChild(const std::string& name) const;
    /// The node at `path` below this one, its names joined by SEPARATOR: "bench.lamp". Empty when there is
    /// none. Also finds nodes whose names hold a SEPARATOR themselves.
    std::shared_ptr<Container> find(const std::string& path) const;
    /// The node at `path`, as find() looks for it, as the class `Node`. Never empty.
    ///
    /// @code
    /// const auto lamp = device->get<CommonModules::Relay_v1_0>("bench.lamp");
    /// @endcode
    /// @throws SpecificationError when there is no such node, or it is of another class. The text names the
    ///         path and what is there instead. For a plain object whose type had no factory when the device
    ///         was opened, it also names the call that registers one.
    template <class Node>
    std::shared_ptr<Node> get(const std::string& path) const {
        const auto node = find(path);
        if (auto found = std::dynamic_pointer_cast<Node>(node))
            return found;
        refuse(path, node.get(), typeid(Node));
    }
    /// All children, in byte-wise order of their names.
    std::vector<std::shared_ptr<Container>> getChildren() const;
    /// The children whose remote type has exactly that name, such as "relay". Blocks: every child that is a
    /// remote object is asked for its type(), one exchange each. Throws what Object_v1_0::type throws.
    std::vector<std::shared_ptr<Container>> getChildren(const std::string& type) const;

    /// For people: the name, then the full name in parentheses unless it is empty.
    std::string toString() const;

private:
    friend class DeviceFactory;
    friend class ObjectFactory;
    friend class Method;
    friend class Object_v1_0;

    [[noreturn]] void refuse(const std::string& path, const Container* node,
                             const std::type_info& desired) const;

    std::shared_ptr<const NamePath> path_;
    std::weak_ptr<Container> parent_;
    std::map<std::string, std::shared_ptr<Container>> children_;
};

} // namespace TAVO
