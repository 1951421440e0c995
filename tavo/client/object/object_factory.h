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

class ChosenPaths;

/// Makes the proxies of remote objects, and is the base of the factories, one for each remote type. For a
/// type of your own derive from TypeFactory, which needs less code, and construct one static factory before
/// you open devices. Derive from ObjectFactory itself to choose the proxy class in a way of your own.
///
/// The library's factories are there from load, or from the first registerCoreObjects() of their group,
/// whichever comes first, and are never destroyed. To replace one, construct yours after that call.
///
/// Do not construct or destroy a factory while a device is being opened: the registry has no lock. Several
/// threads may open devices at once.
class TAVO_API ObjectFactory {
public:
    ObjectFactory(const ObjectFactory&) = delete;
    ObjectFactory& operator=(const ObjectFactory&) = delete;

    /// Builds the proxy of a remote object and those of all objects below it. Blocks: at least four exchanges
    /// for each object. An object whose type has no factory becomes a plain Object_v1_0. DeviceFactory calls
    /// this for you.
    /// @param parent may be empty; it does not get the object as a child.
    /// @return never empty.
    /// @throws Error
    ///         - "Error executing type() method on " name ": " code, when the type call returns a code other
    ///           than 0;
    ///         - "No Object types registered in ObjectFactory";
    ///         - "Object factory built nothing for type " type ": " name, when a factory returns an empty
    ///           pointer;
    ///         - "Object tree is nested too deeply: " name, beyond 64 levels;
    ///         - "Object tree has too many objects: " name, beyond 10000 of them;
    ///
    ///         and what the factories, Container::initalize and Device::call throw. Nothing is left of the
    ///         subtree then.
    static std::shared_ptr<Container> buildObject(std::shared_ptr<Device> device, const std::string& name,
                                                  std::uint32_t instanceId,
                                                  std::shared_ptr<Container> parent);

    /// The names of all types that have a factory, in byte-wise order.
    static std::vector<std::string> registeredTypes();

protected:
    /// Type name to factory.
    using FactoryMap = std::map<std::string, ObjectFactory*>;

    /// Enters the factory in the registry, in place of an earlier one of that type name.
    explicit ObjectFactory(const std::string& typeName);
    /// Takes the factory out of the registry, unless a later one has replaced it. Its type has no factory
    /// then; a replaced one does not come back. Proxies that it has made live on.
    virtual ~ObjectFactory();

    /// Makes the proxy of one object of the factory's type; its children are added afterwards.
    /// @param device, parent, name, instanceId for the constructor of the proxy; see create().
    /// @param probe a plain Object_v1_0 of the same object, to ask for its version.
    /// @return the proxy. An empty pointer abandons the build, and so does an exception.
    virtual std::shared_ptr<Container> build(std::shared_ptr<Device> device,
                                             std::shared_ptr<Container> parent, const std::string& name,
                                             std::uint32_t instanceId,
                                             std::shared_ptr<Object_v1_0> probe) = 0;

    /// Does nothing that can be seen. Calling it makes the linker keep the factory in the program.
    void registerFactory();

    /// Constructs a `Proxy`. If its constructor is protected, ObjectFactory must be its friend, as it is of
    /// classes derived from Proxy.
    /// @param encoders, decoders the tables of the type, which must outlive the proxy.
    template <class Proxy, class Encoders, class Decoders>
    static std::shared_ptr<Container>
    create(std::shared_ptr<Device> device, std::shared_ptr<Container> parent, const std::string& name,
           std::uint32_t instanceId, const Encoders& encoders, const Decoders& decoders) {
        return std::shared_ptr<Container>(
            new Proxy(std::move(device), name, instanceId, std::move(parent), encoders, decoders));
    }

    /// Whether `version` is at most "1.0": 0.x, 1, 1.0 and 1.0.x are.
    static bool isAtMostOneZero(const Version& version);
    /// Refuses versions above "1.0".
    /// @throws SpecificationError "Unknown " type " object version: " and the version's text, for these.
    static void requireAtMostOneZero(const std::string& type, const Version& version);

    /// All factories by type name. Null before the first is constructed; never deleted.
    static FactoryMap* m_factoryMap;

private:
    friend class DeviceFactory;
    friend class LevelFetch;

    static constexpr unsigned mostObjects = 10'000;

    /// @param room  how many more objects may be built; counted down.
    /// @param paths which members are built.
    static std::shared_ptr<Container> buildSubtree(const std::shared_ptr<Device>& device,
                                                   const std::string& name, std::uint32_t instanceId,
                                                   const std::shared_ptr<Container>& parent, unsigned depth,
                                                   unsigned& room, const ChosenPaths& paths);

    std::atomic<bool> registered_ = false;
};

} // namespace TAVO
