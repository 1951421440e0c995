#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
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

struct TAVO_API MemberNameIDPair {
    std::string name;
    std::uint32_t id = 0;
    bool operator==(const MemberNameIDPair&) const = default;
};

struct TAVO_API MethodNameIDPair {
    std::string name;
    std::uint32_t id = 0;
    bool operator==(const MethodNameIDPair&) const = default;
};

struct TAVO_API MethodSignature {
    std::string name;
    std::uint32_t id = 0;
    /// The text that the device reports beside the id.
    std::string signature;
    bool operator==(const MethodSignature&) const = default;
};

/// Whether an object is free, and two texts whose meaning is the device's to define.
struct TAVO_API Available {
    Available() = default;
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries an AvailableReply.
    explicit Available(const dto::result& outcome);

    bool available = false;
    std::string user;
    std::string info;
    bool operator==(const Available&) const = default;
};

} // namespace Object_v1_0_Structs

/// Proxy of one remote object, and base of every versioned proxy class.
///
/// It is addressed by its instance id and knows the ids of the object's methods, which it asks the device for
/// when it is built. Its `get...Method` operations and make() build calls and send nothing; type(),
/// version(), members(), methods() and toString() execute at once and throw what Device::call throws.
///
/// A proxy holds its device weakly: once the device is gone, what would send throws Error "Device no longer
/// exists for object: " and the full name. A proxy belongs to its device's thread.
class TAVO_API Object_v1_0 : public Container {
public:
    using MemberNameIDPair = Object_v1_0_Structs::MemberNameIDPair;
    using MethodNameIDPair = Object_v1_0_Structs::MethodNameIDPair;
    using MethodSignature = Object_v1_0_Structs::MethodSignature;
    using Available = Object_v1_0_Structs::Available;
    using EncoderList = TAVOXTranscode::base_v1_0::EncoderList;
    using DecoderList = TAVOXTranscode::base_v1_0::DecoderList;

    /// The id of the method "methods" on every object.
    static constexpr std::uint32_t MethodsStaticID = 3;

    /// Asks the device for the object's methods, one exchange.
    /// @param encoders, decoders the tables of the object's type; they must outlive the proxy, and keep the
    ///        entries that they have.
    /// @throws what Device::call throws.
    Object_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                std::shared_ptr<Container> parent, const EncoderList& encoders, const DecoderList& decoders);
    ~Object_v1_0() override;

    std::uint32_t getInstanceID() const { return instanceId_; }
    /// The name of the object's remote type as it was when ObjectFactory::buildObject made the object; empty
    /// for one that was made otherwise. Unlike type(), no call to the device.
    const std::string& knownType() const { return knownType_; }
    /// Empty when the device is gone.
    std::shared_ptr<Device> device() const { return device_.lock(); }

    /// The id that the device gave the method.
    /// @throws SpecificationError "Could not find Method ID for Method: " and the name.
    std::uint32_t getMethodID(const std::string& name) const;
    /// @throws SpecificationError "Could not find Method Encoder for Method: " and the name.
    TAVOXTranscode::Encoder getEncoder(const std::string& name) const;
    /// @throws SpecificationError "Could not find Method Decoder for Method: " and the name.
    TAVOXTranscode::Decoder getDecoder(const std::string& name) const;

    /// What make() builds: a Method where there is a status alone, else a BoundMethod.
    template <class Result>
    using MethodFor =
        std::conditional_t<std::is_same_v<Result, TAVOXTranscode::None>, Method, BoundMethod<Result>>;

    /// A call of any method of the object: the typed way beside the named operations. Nothing is sent. A
    /// wrong number of arguments, or a record that is not the call's, does not compile.
    ///
    /// @code
    /// using namespace TAVO::TAVOXTranscode;
    /// auto shift = jtag->make(jtag_v1_1::shiftDR, 32, bytes);
    /// device->call(shift);
    /// use(shift->value().data);
    /// @endcode
    /// @param call one of the calls in the namespace of the object's type, or one of your own.
    /// @param arguments one for each field of the request record, in wire order, or such a record; an integer
    ///        is narrowed to the field's width by keeping its low bits.
    /// @return a BoundMethod of the call's reply record, or of `Result` where that is given: a user-level
    ///         record, or a plain value, as BoundMethod takes them; a plain value is that of the reply's only
    ///         field. A Method where the call has no reply.
    /// @throws SpecificationError when the device does not list the method, or the object's tables have no
    ///         functions for it.
    template <class Result = void, class Request, class Reply, class... Arguments>
    auto make(const TAVOXTranscode::Call<Request, Reply>& call, Arguments&&... arguments) const {
        using Given = std::conditional_t<std::is_void_v<Result>, Reply, Result>;
        auto method = std::make_shared<MethodFor<Given>>(
            std::string(call.name), *this,
            TAVOXTranscode::makeParams(call, std::forward<Arguments>(arguments)...));
        if constexpr (TAVOXTranscode::hasOnlyField<Reply>() && Plain<Given>)
            method->template takeOnlyFieldOf<Reply>();
        return method;
    }

    /// Whether the device lists the method.
    bool hasMethod(const std::string& name) const { return methods_.contains(name) || otherMethod(name); }
    /// What the object's tables hold for a method; null where they have no such entry.
    struct Functions {
        TAVOXTranscode::Encoder encoder = nullptr;
        TAVOXTranscode::Decoder decoder = nullptr;
    };
    Functions findFunctions(std::string_view name) const;

    std::shared_ptr<BoundMethod<dto::Base::TypeReply>> getTypeMethod() const;
    std::shared_ptr<BoundMethod<dto::Base::VersionReply>> getVersionMethod() const;
    std::shared_ptr<BoundMethod<dto::Base::MembersReply>> getMembersMethod() const;
    std::shared_ptr<BoundMethod<dto::Base::MethodsReply>> getMethodsMethod() const;
    std::shared_ptr<BoundMethod<std::vector<MethodSignature>>> getMethodsVerboseMethod() const;
    std::shared_ptr<BoundMethod<Available>> getAvailableMethod() const;
    /// The meaning of the two texts is the device's to define.
    std::shared_ptr<Method> getReserveMethod(std::string first, std::string second) const;
    std::shared_ptr<Method> getUnreserveMethod() const;

    /// The name of the object's remote type, such as "relay". One exchange.
    std::string type() const;
    /// One exchange.
    Version version() const;
    /// The object's members as the device lists them now. One exchange.
    std::vector<MemberNameIDPair> members() const;
    /// The object's methods as the device lists them now. One exchange.
    std::vector<MethodNameIDPair> methods() const;
    /// Type, version, members and methods in one line. Four exchanges.
    std::string toString() const;

private:
    friend class CallExchange;
    friend class Method;
    friend class ObjectFactory;

    /// What a Method is bound to.
    struct RemoteMethod {
        std::uint32_t id;
        TAVOXTranscode::Encoder encoder;
        TAVOXTranscode::Decoder decoder;
    };
    /// @throws what getMethodID(), getEncoder() and getDecoder() throw, the first of them first.
    RemoteMethod remoteMethod(const std::string& name) const;

    /// What is known of one method; the functions are null where the tables had none when the proxy was made.
    struct MethodEntry {
        std::uint32_t id = 0;
        const TAVOXTranscode::Encoder* encoder = nullptr;
        const TAVOXTranscode::Decoder* decoder = nullptr;
    };
    /// False, and nothing is entered, when the tables have no function of that name.
    bool enter(const std::string& name, std::uint32_t id);
    void enterOthers(const dto::Base::MethodsReply& listed, std::size_t count, std::size_t nameBytes);
    const std::uint32_t* otherMethod(const std::string& name) const;

    /// A method that the device lists and the tables have no function for: a device may list millions.
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
    const Device* deviceAddress_; ///< to compare, never to follow
    std::uint32_t instanceId_;
    std::string knownType_;
    std::unordered_map<std::string, MethodEntry> methods_;
    std::vector<OtherMethod> others_; ///< by name
    std::string otherNames_;
    const EncoderList* encoders_;
    const DecoderList* decoders_;
};

template <>
struct TAVO_API PlainResult<std::vector<Object_v1_0_Structs::MethodSignature>> {
    static std::vector<Object_v1_0_Structs::MethodSignature> of(const dto::result& outcome);
};

} // namespace TAVO
