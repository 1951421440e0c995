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

/// Factory of a remote type, made from a list of which proxy class serves which versions. Derive from it for
/// a type of your own. While it lives, the type is among objectTables(), so tools can call its methods by
/// name and simulators can serve them.
///
/// @code
/// class LampFactory : public TAVO::TypeFactory {
/// public:
///     LampFactory() : TypeFactory("lamp", {servedBy<Lamp_v1_0>("1.0")}) {}
/// };
/// @endcode
class TAVO_API TypeFactory : public ObjectFactory {
protected:
    /// One proxy class of the type; servedBy() makes it.
    struct ProxyClass {
        std::string_view version;        ///< the version of the methods, such as "1.0"
        bool (*serves)(const Version&);  ///< whether objects of that version get the class; null: all do
        TAVOXTranscode::MethodRows rows; ///< the methods
        /// Constructs a proxy of the class.
        std::shared_ptr<Container> (*build)(std::shared_ptr<Device>, std::shared_ptr<Container>,
                                            const std::string& name, std::uint32_t instanceId);
    };

    /// An entry for the class `Proxy`.
    /// @param version the version of the methods; a literal.
    /// @param serves  whether objects of the given version get this class; null: all do. When it is null in
    ///        every entry, objects are not asked for their version, which saves an exchange each.
    template <class Proxy>
    static ProxyClass servedBy(std::string_view version, bool (*serves)(const Version&) = everyVersion) {
        return {version, serves, Proxy::methodRows(), buildProxy<Proxy>};
    }

    /// For servedBy(): serves every version, but asks for it.
    static bool everyVersion(const Version&) { return true; }
    /// For servedBy(): serves 1.0 and 1.0.x, but not "1", which equals "1.1" as well.
    static bool isOneZeroAlone(const Version& version);

    /// Enters the factory in the registry, and its methods in objectTables().
    /// @param type    the name of the remote type.
    /// @param classes the first one that serves an object's version gets the object. If none does, opening
    ///        throws SpecificationError "Unknown " typeInMessages " object version: " and the version's text.
    /// @param typeInMessages the name in that text.
    TypeFactory(std::string type, std::vector<ProxyClass> classes, std::string typeInMessages);
    /// The same with the name of the type in messages.
    TypeFactory(std::string type, std::vector<ProxyClass> classes);
    /// Takes the factory out of the registry, and its methods out of objectTables().
    ~TypeFactory() override;

    /// Makes the proxy, of the class that serves the object's version.
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

/// Enters one factory of each of these classes, which lives as long as the program. Any thread may call it,
/// and more than once.
template <class... Factories>
void registerFactories() {
    const auto registerOne = [](TypeFactory& factory) { factory.registerFactory(); };
    (registerOne(immortal<Factories>()), ...);
}

} // namespace TAVO
