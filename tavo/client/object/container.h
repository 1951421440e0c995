#pragma once

#include <map>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include <tavo/client/export.h>

namespace TAVO {

class NamePath;

/// A node of the tree that mirrors the device's objects: a name, a dotted full name, a non-owning link to the
/// parent and owning links to the children, which are kept in byte-wise order of their names.
///
/// Nodes are handled through shared pointers. The tree is built when a device is opened and only read
/// afterwards; a node and its device belong to one thread at a time. Nothing here reports a failure unless it
/// says so.
class TAVO_API Container {
public:
    /// Joins names into full names: ".".
    static inline const std::string SEPARATOR = ".";

    /// @param name   the name under which the parent lists this node.
    /// @param parent may be empty; the full name is then the name alone. Kept as a weak link.
    Container(const std::string& name, std::shared_ptr<Container> parent);
    /// Copies share the children.
    Container(const Container&) = default;
    Container& operator=(const Container&) = default;
    virtual ~Container();

protected:
    /// Called once on every node that ObjectFactory::buildObject makes, when its children are there. What it
    /// throws abandons the build. (The spelling is the published one.)
    virtual void initalize();

public:
    std::string getName() const;
    /// The names from the root to this node, joined by SEPARATOR. It stays the same when nodes above are
    /// gone.
    std::string getFullName() const;
    /// Empty for a node without parent and when the parent no longer exists. Objects at the top level of a
    /// device have no parent.
    std::shared_ptr<Container> getParent() const { return parent_.lock(); }

    /// Adds the child under its name; an earlier child of that name is released.
    /// @throws std::invalid_argument for an empty pointer.
    void addChild(std::shared_ptr<Container> child);
    /// The child of exactly that name, or an empty pointer.
    std::shared_ptr<Container> getChild(const std::string& name) const;
    /// The node below this one that `path` leads to, names joined by SEPARATOR: "bench.lamp". Empty where
    /// there is none. A name may hold a SEPARATOR itself.
    std::shared_ptr<Container> find(const std::string& path) const;
    /// The same as the class that it must be.
    ///
    /// @code
    /// const auto lamp = device->get<CommonModules::Relay_v1_0>("bench.lamp");
    /// @endcode
    /// @throws SpecificationError that names the path and what is there instead: other children, another
    /// class,
    ///         or a plain object whose type had no factory when the device was opened, and then the call that
    ///         registers one.
    template <class Node>
    std::shared_ptr<Node> get(const std::string& path) const {
        const auto node = find(path);
        if (auto found = std::dynamic_pointer_cast<Node>(node))
            return found;
        refuse(path, node.get(), typeid(Node));
    }
    /// All children, in byte-wise order of their names.
    std::vector<std::shared_ptr<Container>> getChildren() const;
    /// The children that are remote objects of exactly that type. Asks every one of them for its type(), one
    /// exchange each, and throws what those calls throw.
    std::vector<std::shared_ptr<Container>> getChildren(const std::string& type) const;

    /// The name, then the full name in parentheses unless it is empty.
    std::string toString() const;

private:
    friend class DeviceFactory;
    friend class ObjectFactory;
    friend class Method;

    [[noreturn]] void refuse(const std::string& path, const Container* node,
                             const std::type_info& desired) const;

    std::shared_ptr<const NamePath> path_;
    std::weak_ptr<Container> parent_;
    std::map<std::string, std::shared_ptr<Container>> children_;
};

} // namespace TAVO
