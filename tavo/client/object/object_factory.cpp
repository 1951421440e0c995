#include <tavo/client/object/object_factory.h>

#include <tavo/client/object/device.h>
#include <tavo/client/object/internal/chosen_paths.h>
#include <tavo/client/object/internal/return_code.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

namespace {

// A device whose objects contain each other must not exhaust the stack.
constexpr unsigned deepestLevel = 64;

std::string typeOf(Device& device, const Object_v1_0& probe) {
    const auto method = probe.getTypeMethod();
    device.call(method);
    requireSuccess(*method, probe.getFullName());
    return method->value().type;
}

} // namespace

constinit ObjectFactory::FactoryMap* ObjectFactory::m_factoryMap = nullptr;

ObjectFactory::ObjectFactory(const std::string& typeName) {
    // Never deleted: the program may open devices and destroy factories at any time, even after main.
    if (!m_factoryMap)
        m_factoryMap = new FactoryMap;
    (*m_factoryMap)[typeName] = this;
}

ObjectFactory::~ObjectFactory() {
    if (m_factoryMap)
        std::erase_if(*m_factoryMap, [this](const auto& entry) { return entry.second == this; });
}

void ObjectFactory::registerFactory() { registered_ = true; }

std::vector<std::string> ObjectFactory::registeredTypes() {
    std::vector<std::string> types;
    if (m_factoryMap)
        for (const auto& [type, factory] : *m_factoryMap)
            types.push_back(type);
    return types;
}

bool ObjectFactory::isAtMostOneZero(const Version& version) { return version <= Version("1.0"); }

void ObjectFactory::requireAtMostOneZero(const std::string& type, const Version& version) {
    if (!isAtMostOneZero(version))
        throw SpecificationError("Unknown " + type + " object version: " + version.text);
}

std::shared_ptr<Container> ObjectFactory::buildObject(std::shared_ptr<Device> device, const std::string& name,
                                                      std::uint32_t instanceId,
                                                      std::shared_ptr<Container> parent) {
    auto room = mostObjects;
    return buildSubtree(device, name, instanceId, parent, 1, room, {});
}

std::shared_ptr<Container> ObjectFactory::buildSubtree(const std::shared_ptr<Device>& device,
                                                       const std::string& name, std::uint32_t instanceId,
                                                       const std::shared_ptr<Container>& parent,
                                                       unsigned depth, unsigned& room,
                                                       const ChosenPaths& paths) {
    const auto refuse = [&](const char* fault) {
        throw Error(fault + (parent ? parent->getFullName() + Container::SEPARATOR : std::string()) + name);
    };
    if (depth > deepestLevel)
        refuse("Object tree is nested too deeply: ");
    if (room == 0)
        refuse("Object tree has too many objects: ");
    --room;

    namespace base = TAVOXTranscode::base_v1_0;
    const auto makePlain = [&] {
        return std::make_shared<Object_v1_0>(device, name, instanceId, parent, base::encoders(),
                                             base::decoders());
    };
    const auto probe = makePlain();
    const auto type = typeOf(*device, *probe);
    if (!m_factoryMap)
        throw Error("No Object types registered in ObjectFactory");
    const auto factory = m_factoryMap->find(type);
    std::shared_ptr<Container> built = factory == m_factoryMap->end()
                                           ? makePlain()
                                           : factory->second->build(device, parent, name, instanceId, probe);
    if (!built)
        throw Error("Object factory built nothing for type " + type + ": " + probe->getFullName());
    if (const auto object = std::dynamic_pointer_cast<Object_v1_0>(built)) {
        object->knownType_ = type;
        // A proxy may need any of its members.
        const auto below = factory == m_factoryMap->end() ? paths : ChosenPaths();
        for (const auto& member : object->members())
            if (below.areAll() || below.includes(built->getFullName() + Container::SEPARATOR + member.name))
                built->addChild(buildSubtree(device, member.name, member.id, built, depth + 1, room, below));
    }
    built->initalize();
    return built;
}

} // namespace TAVO
