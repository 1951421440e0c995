#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/bound_method.h>
#include <tavo/client/object/container.h>
#include <tavo/client/object/version.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/make_record.h>

namespace TAVO {

class Device;

/// Records that the operations of every object return.
namespace Object_v1_0_Structs {

/// A child object, as its parent lists it.
struct TAVO_API MemberNameIDPair {
    std::string name;     ///< its own name, without those of its parents
    std::uint32_t id = 0; ///< its instance id
    bool operator==(const MemberNameIDPair&) const = default;
};

/// A method of an object, as the object lists it.
struct TAVO_API MethodNameIDPair {
    std::string name;
    std::uint32_t id = 0; ///< holds for this object only
    bool operator==(const MethodNameIDPair&) const = default;
};

/// A method of an object with a text about it.
struct TAVO_API MethodSignature {
    std::string name;
    std::uint32_t id = 0;  ///< holds for this object only
    std::string signature; ///< a text about the method, the device's to define
    bool operator==(const MethodSignature&) const = default;
};

/// Whether an object is free.
struct TAVO_API Available {
    Available() = default;
    /// The fields of an AvailableReply.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit Available(const dto::result& outcome);

    bool available = false; ///< whether it is free
    std::string user;       ///< a text, the device's to define
    std::string info;       ///< a text, the device's to define
    bool operator==(const Available&) const = default;
};

} // namespace Object_v1_0_Structs

/// Proxy of one remote object, and base of every versioned proxy class. Find proxies in the tree of the
/// Device: Container::get. An object whose type has no factory is a plain Object_v1_0, on which only the
/// eight methods of every object can be called.
///
/// `get...Method` operations and make() only build calls, for Device::call. type(), version(), members(),
/// methods() and toString() execute at once: they block, and throw what Device::call throws.
///
/// A proxy does not keep its device alive. Without it, what would send throws Error "Device no longer exists
/// for object: " and the full name. A proxy belongs to its device's thread.
class TAVO_API Object_v1_0 : public Container {
public:
    /// What members() returns.
    using MemberNameIDPair = Object_v1_0_Structs::MemberNameIDPair;
    /// What methods() returns.
    using MethodNameIDPair = Object_v1_0_Structs::MethodNameIDPair;
    /// What getMethodsVerboseMethod() yields.
    using MethodSignature = Object_v1_0_Structs::MethodSignature;
    /// What getAvailableMethod() yields.
    using Available = Object_v1_0_Structs::Available;
    using EncoderList = TAVOXTranscode::base_v1_0::EncoderList;
    using DecoderList = TAVOXTranscode::base_v1_0::DecoderList;

    /// The id of the method "methods", the same on every object.
    static constexpr std::uint32_t MethodsStaticID = 3;

    /// Asks the device for the ids of the object's methods: blocks for one exchange. ObjectFactory makes the
    /// proxies of the tree; construct one yourself only for an object that is not in it.
    /// @param device     the device of the object; not kept alive.
    /// @param name       the name under which the parent lists the object.
    /// @param instanceId the address of the object.
    /// @param parent     may be empty; not kept alive.
    /// @param encoders, decoders the tables of the object's type. They must outlive the proxy, and keep their
    ///        entries.
    /// @throws Error when `device` is empty, and what Device::call throws.
    Object_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                std::shared_ptr<Container> parent, const EncoderList& encoders, const DecoderList& decoders);
    ~Object_v1_0() override;

    /// The number by which calls address the object.
    std::uint32_t getInstanceID() const { return instanceId_; }
    /// The name of the object's remote type, as the device gave it when the tree was built; empty for a proxy
    /// that ObjectFactory did not make. Unlike type(), it does not ask the device.
    const std::string& knownType() const { return knownType_; }
    /// The device; empty once it has been destroyed.
    std::shared_ptr<Device> device() const { return device_.lock(); }

    /// The id that the device gave the method.
    /// @throws SpecificationError "Could not find Method ID for Method: " and the name, when the device does
    ///         not list the method.
    std::uint32_t getMethodID(const std::string& name) const;
    /// The function that writes the method's parameters.
    /// @throws SpecificationError "Could not find Method Encoder for Method: " and the name, when the
    ///         object's table has none.
    TAVOXTranscode::Encoder getEncoder(const std::string& name) const;
    /// The function that reads the method's result.
    /// @throws SpecificationError "Could not find Method Decoder for Method: " and the name, when the
    ///         object's table has none.
    TAVOXTranscode::Decoder getDecoder(const std::string& name) const;

    /// What make() builds: a BoundMethod, or for a call that returns its status alone a Method.
    template <class Result>
    using MethodFor =
        std::conditional_t<std::is_same_v<Result, TAVOXTranscode::None>, Method, BoundMethod<Result>>;

    /// Builds a call of any method, also of those without a `get...Method` operation. Sends nothing. A wrong
    /// number of arguments, or the record of another call, does not compile.
    ///
    /// @code
    /// using namespace TAVO::TAVOXTranscode;
    /// auto shift = jtag->make(jtag_v1_1::shiftDR, 32, bytes);
    /// device->call(shift);
    /// use(shift->value().data);
    /// @endcode
    /// @tparam Result what value() of the BoundMethod returns, when not the reply record: a user-level
    ///         record, or a plain value that the only field of the reply converts to.
    /// @param call one of the Calls in the namespace of the object's type, or one of your own.
    /// @param arguments one for each field of the request record, in wire order, or the whole record. An
    ///        integer that is too wide for its field keeps its low bits.
    /// @return a BoundMethod, or a Method where the call returns its status alone. Never empty.
    /// @throws SpecificationError when the device does not list the method, or the object's tables have no
    ///         functions for it.
    template <class Result = void, class Request, class Reply, class... Arguments>
    auto make(const TAVOXTranscode::Call<Request, Reply>& call, Arguments&&... arguments) const {
        using Given = std::conditional_t<std::is_void_v<Result>, Reply, Result>;
        auto method = TAVOXTranscode::makePooled<MethodFor<Given>>(
            *this, targetOf(call.name),
            TAVOXTranscode::makeParams(call, std::forward<Arguments>(arguments)...));
        if constexpr (TAVOXTranscode::hasOnlyField<Reply>() && Plain<Given>)
            method->template takeOnlyFieldOf<Reply>();
        return method;
    }

    /// Whether the device listed the method when the proxy was made. Does not tell whether the library has
    /// functions for it.
    bool hasMethod(const std::string& name) const { return entryOf(name) || otherMethod(name); }
    /// The two functions of a method.
    struct Functions {
        TAVOXTranscode::Encoder encoder = nullptr; ///< null when the object's table has none
        TAVOXTranscode::Decoder decoder = nullptr; ///< null when the object's table has none
    };
    /// What the object's tables hold for the method, whether or not the device lists it.
    Functions findFunctions(std::string_view name) const;

    /// Asks for the name of the object's remote type.
    std::shared_ptr<BoundMethod<dto::Base::TypeReply>> getTypeMethod() const;
    /// Asks for the version of the object's type.
    std::shared_ptr<BoundMethod<dto::Base::VersionReply>> getVersionMethod() const;
    /// Asks for the object's children and their instance ids.
    std::shared_ptr<BoundMethod<dto::Base::MembersReply>> getMembersMethod() const;
    /// Asks for the object's methods and their ids.
    std::shared_ptr<BoundMethod<dto::Base::MethodsReply>> getMethodsMethod() const;
    /// Asks for the object's methods, their ids and their signatures.
    std::shared_ptr<BoundMethod<std::vector<MethodSignature>>> getMethodsVerboseMethod() const;
    /// Asks whether the object is free.
    std::shared_ptr<BoundMethod<Available>> getAvailableMethod() const;
    /// Reserves the object. What that means, and the two texts, are the device's to define; the flag of the
    /// request stays 0.
    std::shared_ptr<Method> getReserveMethod(std::string first, std::string second) const;
    /// Undoes getReserveMethod().
    std::shared_ptr<Method> getUnreserveMethod() const;

    /// The name of the object's remote type, such as "relay". One exchange.
    std::string type() const;
    /// The version of the object's type. One exchange.
    Version version() const;
    /// The object's children as the device lists them now; the tree does not change. One exchange.
    std::vector<MemberNameIDPair> members() const;
    /// The object's methods as the device lists them now. One exchange.
    std::vector<MethodNameIDPair> methods() const;
    /// Type, version, members and methods in one line, for people. Four exchanges.
    std::string toString() const;

private:
    friend class CallExchange;
    friend class LevelFetch;
    friend class Method;
    friend class ObjectFactory;

    /// Asks nobody: of its methods it knows "methods" alone.
    struct Unasked {};
    Object_v1_0(Unasked, const std::shared_ptr<Device>& device, const std::string& name,
                std::uint32_t instanceId, const std::shared_ptr<Container>& parent,
                const EncoderList& encoders, const DecoderList& decoders);

    /// Throws what getMethodID(), getEncoder() and getDecoder() throw, in this order.
    std::shared_ptr<const Method::Target> targetOf(std::string_view name) const;

    /// A method that the device lists and the tables know.
    struct MethodEntry {
        const std::string* name = nullptr;                ///< in a table
        const TAVOXTranscode::Encoder* encoder = nullptr; ///< null where the table had none
        const TAVOXTranscode::Decoder* decoder = nullptr; ///< null where the table had none
        std::uint32_t id = 0;
        mutable std::shared_ptr<const Method::Target> target; ///< made with the first Method
        /// Whether the target has the functions of the tables, which may get others.
        bool isUpToDate() const {
            return target && target->encoder == *encoder && target->decoder == *decoder;
        }
    };
    static std::string_view nameOfEntry(const MethodEntry& entry) { return *entry.name; }
    const MethodEntry* entryOf(std::string_view name) const;
    std::shared_ptr<const Method::Target> makeTarget(const std::string& name) const;
    /// False, with nothing entered, when the tables have no function of that name.
    bool enter(const std::string& name, std::uint32_t id);
    void enterOthers(const dto::Base::MethodsReply& listed, std::size_t count, std::size_t nameBytes);
    const std::uint32_t* otherMethod(const std::string& name) const;

    /// A method that the device lists but the tables do not know. Small, as a device may list millions.
    struct OtherMethod {
        std::uint32_t nameBegin;
        std::uint32_t nameLength;
        std::uint32_t id;
    };
    std::string_view nameOf(const OtherMethod& method) const {
        return std::string_view(otherNames_).substr(method.nameBegin, method.nameLength);
    }

    template <class Result>
    Result execute(std::shared_ptr<BoundMethod<Result>> method) const;

    std::weak_ptr<Device> device_;
    const Device* deviceAddress_; ///< for comparison only: may dangle
    std::uint32_t instanceId_;
    std::string knownType_;
    std::vector<MethodEntry> methods_; ///< sorted by name
    /// Places in methods_ that calls were made of last. Batches are made of few methods.
    mutable std::array<std::size_t, 4> recent_{};
    mutable std::size_t oldestRecent_ = 0;
    std::vector<OtherMethod> others_; ///< sorted by name
    std::string otherNames_;
    const EncoderList* encoders_;
    const DecoderList* decoders_;
};

/// The entries of a dto::Base::MethodsReply.
template <>
struct TAVO_API PlainResult<std::vector<Object_v1_0_Structs::MethodSignature>> {
    static std::vector<Object_v1_0_Structs::MethodSignature> of(const dto::result& outcome);
};

} // namespace TAVO
