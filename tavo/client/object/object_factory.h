#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/object.h>

namespace TAVO {

/// Turns remote objects, known by name and instance id, into proxies of the right class.
///
/// One factory object exists per remote type, entered under its type name. The library's own are there from
/// load or from the first call of registerCoreObjects() of their group, whichever comes first, and are never
/// destroyed. Derive from it to serve a type of your own: construct one static object of your factory before
/// opening devices. To take the place of one of the library's, construct it after that call.
///
/// No factory may be constructed or destroyed while a device is opened. The registry is only read then, so
/// several devices may be opened by different threads at once.
class TAVO_API ObjectFactory {
public:
    ObjectFactory(const ObjectFactory&) = delete;
    ObjectFactory& operator=(const ObjectFactory&) = delete;

    /// Builds the proxy of a remote object and, below it, those of its members and theirs. At least four
    /// exchanges for each object. An object of a type without factory becomes a plain Object_v1_0.
    /// @throws Error
    ///         - "Error executing type() method on " name ": " code, when the device fails the type call;
    ///         - "No Object types registered in ObjectFactory";
    ///         - "Object factory built nothing for type " type ": " name, when a factory returns an empty
    ///           pointer;
    ///         - "Object tree is nested too deeply: " name, beyond 64 levels;
    ///         - "Object tree has too many objects: " name, beyond 10000 of them;
    ///         and what the factories, the hooks and Device::call throw. The whole subtree is abandoned then.
    static std::shared_ptr<Container> buildObject(std::shared_ptr<Device> device, const std::string& name,
                                                  std::uint32_t instanceId,
                                                  std::shared_ptr<Container> parent);

    /// The names of all types that have a factory, in byte-wise order.
    static std::vector<std::string> registeredTypes();

protected:
    using FactoryMap = std::map<std::string, ObjectFactory*>;

    /// Enters the factory under its type name, in place of an earlier one of that name.
    explicit ObjectFactory(const std::string& typeName);
    /// Takes the factory out of the registry: its type has none then. The entry of a later factory of that
    /// name stays.
    virtual ~ObjectFactory();

    /// The proxy for one object of the factory's type.
    /// @param probe a plain Object_v1_0 of the same object, to ask for its version.
    /// @return never an empty pointer: the build is abandoned then.
    virtual std::shared_ptr<Container> build(std::shared_ptr<Device> device,
                                             std::shared_ptr<Container> parent, const std::string& name,
                                             std::uint32_t instanceId,
                                             std::shared_ptr<Object_v1_0> probe) = 0;

    /// Marks the factory as asked for. Calling it makes sure that the factory is part of the program.
    void registerFactory();

    /// A new proxy with the arguments of every proxy constructor; proxies whose constructor is protected name
    /// ObjectFactory as their friend.
    template <class Proxy, class Encoders, class Decoders>
    static std::shared_ptr<Container>
    create(std::shared_ptr<Device> device, std::shared_ptr<Container> parent, const std::string& name,
           std::uint32_t instanceId, const Encoders& encoders, const Decoders& decoders) {
        return std::shared_ptr<Container>(
            new Proxy(std::move(device), name, instanceId, std::move(parent), encoders, decoders));
    }

    /// Whether `version` is lower than "1.0" or equal to it: 0.x, 1, 1.0 and 1.0.x are.
    static bool isAtMostOneZero(const Version& version);
    /// @throws SpecificationError "Unknown " type " object version: " and the version's text unless it
    ///         isAtMostOneZero().
    static void requireAtMostOneZero(const std::string& type, const Version& version);

    /// All factories by type name; null until the first one is entered, never deleted.
    static FactoryMap* m_factoryMap;

private:
    friend class DeviceFactory;

    static constexpr unsigned mostObjects = 10'000;

    /// @param room how many objects may still be built; one less for each that is.
    static std::shared_ptr<Container> buildSubtree(const std::shared_ptr<Device>& device,
                                                   const std::string& name, std::uint32_t instanceId,
                                                   const std::shared_ptr<Container>& parent, unsigned depth,
                                                   unsigned& room);

    std::atomic<bool> registered_ = false;
};

} // namespace TAVO
