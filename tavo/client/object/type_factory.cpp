#include <tavo/client/object/type_factory.h>

#include <algorithm>
#include <utility>

#include <tavo/client/object/internal/type_registry.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

bool TypeFactory::isOneZeroAlone(const Version& version) {
    return version != Version("1.1") && version == Version("1.0");
}

TypeFactory::TypeFactory(std::string type, std::vector<ProxyClass> classes)
    : TypeFactory(type, std::move(classes), type) {}

TypeFactory::TypeFactory(std::string type, std::vector<ProxyClass> classes, std::string typeInMessages)
    : ObjectFactory(type)
    , type_(std::move(type))
    , classes_(std::move(classes))
    , typeInMessages_(std::move(typeInMessages)) {
    for (const auto& proxyClass : classes_)
        immortal<TypeRegistry>().enter({type_, proxyClass.version, proxyClass.rows, proxyClass.serves}, this);
}

TypeFactory::~TypeFactory() { immortal<TypeRegistry>().remove(this); }

std::shared_ptr<Container> TypeFactory::build(std::shared_ptr<Device> device,
                                              std::shared_ptr<Container> parent, const std::string& name,
                                              std::uint32_t instanceId, std::shared_ptr<Object_v1_0> probe) {
    const auto isAsked = [](const ProxyClass& proxyClass) { return proxyClass.serves != nullptr; };
    const auto version = std::ranges::any_of(classes_, isAsked) ? probe->version() : Version();
    for (const auto& proxyClass : classes_)
        if (!proxyClass.serves || proxyClass.serves(version))
            return proxyClass.build(std::move(device), std::move(parent), name, instanceId);
    throw SpecificationError("Unknown " + typeInMessages_ + " object version: " + version.text);
}

} // namespace TAVO
