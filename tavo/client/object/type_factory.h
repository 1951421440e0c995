#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/object/proxy.h>
#include <tavo/client/transcode/immortal.h>

namespace TAVO {

/// Factory of a remote type from a description: which proxy class serves which versions of it. While it
/// lives, its type and methods are among objectTables(), so that they can be described, called by name and
/// simulated.
///
/// @code
/// class LampFactory : public TAVO::TypeFactory {
/// public:
///     LampFactory() : TypeFactory("lamp", {servedBy<Lamp_v1_0>("1.0")}) {}
/// };
/// @endcode
class TAVO_API TypeFactory : public ObjectFactory {
protected:
    /// One proxy class of the type.
    struct ProxyClass {
        std::string_view version; ///< of the methods: "1.0"
        bool (*serves)(const Version&);
        TAVOXTranscode::MethodRows rows;
        std::shared_ptr<Container> (*build)(std::shared_ptr<Device>, std::shared_ptr<Container>,
                                            const std::string& name, std::uint32_t instanceId);
    };

    /// @param version the version of the type that the class describes; a literal.
    /// @param serves  which versions of an object it serves; null for all, and then an object that no other
    ///                class may serve is not even asked for its version.
    template <class Proxy>
    static ProxyClass servedBy(std::string_view version, bool (*serves)(const Version&) = everyVersion) {
        return {version, serves, Proxy::methodRows(), buildProxy<Proxy>};
    }

    static bool everyVersion(const Version&) { return true; }
    /// Equal to "1.0" and not equal to "1.1": "1" equals both.
    static bool isOneZeroAlone(const Version& version);

    /// Enters the factory, and its methods.
    /// @param classes the first that serves an object's version gets it. Where none does, building throws
    ///        SpecificationError "Unknown " typeInMessages " object version: " and the version's text.
    TypeFactory(std::string type, std::vector<ProxyClass> classes, std::string typeInMessages);
    TypeFactory(std::string type, std::vector<ProxyClass> classes);
    ~TypeFactory() override;

    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;

private:
    template <class... Factories>
    friend void registerFactories();

    template <class Proxy>
    static std::shared_ptr<Container> buildProxy(std::shared_ptr<Device> device,
                                                 std::shared_ptr<Container> parent, const std::string& name,
                                                 std::uint32_t instanceId) {
        return create<Proxy>(std::move(device), std::move(parent), name, instanceId,
                             immortal<const typename Proxy::EncoderList>(),
                             immortal<const typename Proxy::DecoderList>());
    }

    std::string type_;
    std::vector<ProxyClass> classes_;
    std::string typeInMessages_;
};

/// Makes sure that one object of each of these factories is part of the program and entered.
template <class... Factories>
void registerFactories() {
    const auto registerOne = [](TypeFactory& factory) { factory.registerFactory(); };
    (registerOne(immortal<Factories>()), ...);
}

} // namespace TAVO
