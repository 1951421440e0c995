#include <tavo/client/object/object.h>

#include <utility>

#include <tavo/client/device/device.h>
#include <tavo/client/transcode/codec.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

namespace {

template <class Table>
const auto& lookUp(const Table& table, const std::string& name, const char* what) {
    const auto found = table.find(name);
    if (found == table.end())
        throw SpecificationError("Could not find Method " + std::string(what) + " for Method: " + name);
    return found->second;
}

template <class Pairs>
std::string joinedNames(const Pairs& pairs) {
    std::string text;
    const char* separator = "";
    for (const auto& pair : pairs) {
        text += separator + pair.name;
        separator = ", ";
    }
    return text;
}

} // namespace

Object_v1_0_Structs::Available::Available(const dto::result& outcome) {
    const auto& reply = dto::replyOf<dto::Base::AvailableReply>(outcome);
    available = reply.available != 0;
    user = reply.user;
    info = reply.info;
}

std::vector<Object_v1_0_Structs::MethodSignature>
PlainResult<std::vector<Object_v1_0_Structs::MethodSignature>>::of(const dto::result& outcome) {
    std::vector<Object_v1_0_Structs::MethodSignature> signatures;
    for (const auto& method : dto::replyOf<dto::Base::MethodsReply>(outcome).methods)
        signatures.push_back({method.name, method.id, method.signature});
    return signatures;
}

Object_v1_0::Object_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                         std::shared_ptr<Container> parent, const EncoderList& encoders,
                         const DecoderList& decoders)
    : Container(name, std::move(parent))
    , device_(device)
    , instanceId_(instanceId)
    , encoders_(&encoders)
    , decoders_(&decoders) {
    enter("methods", MethodsStaticID);
    for (const auto& method : methods())
        enter(method.name, method.id);
}

Object_v1_0::~Object_v1_0() = default;

void Object_v1_0::enter(const std::string& name, std::uint32_t id) {
    const auto encoder = encoders_->find(name);
    const auto decoder = decoders_->find(name);
    methods_[name] = {id, encoder == encoders_->end() ? nullptr : &encoder->second,
                      decoder == decoders_->end() ? nullptr : &decoder->second};
}

std::uint32_t Object_v1_0::getMethodID(const std::string& name) const {
    return lookUp(methods_, name, "ID").id;
}

TAVOXTranscode::Encoder Object_v1_0::getEncoder(const std::string& name) const {
    return lookUp(*encoders_, name, "Encoder");
}

TAVOXTranscode::Decoder Object_v1_0::getDecoder(const std::string& name) const {
    return lookUp(*decoders_, name, "Decoder");
}

Object_v1_0::RemoteMethod Object_v1_0::remoteMethod(const std::string& name) const {
    const auto& entry = lookUp(methods_, name, "ID");
    return {entry.id, entry.encoder ? *entry.encoder : getEncoder(name),
            entry.decoder ? *entry.decoder : getDecoder(name)};
}

std::shared_ptr<BoundMethod<dto::Base::TypeReply>> Object_v1_0::getTypeMethod() const {
    return prepare<dto::Base::TypeReply>("type");
}

std::shared_ptr<BoundMethod<dto::Base::VersionReply>> Object_v1_0::getVersionMethod() const {
    return prepare<dto::Base::VersionReply>("version");
}

std::shared_ptr<BoundMethod<dto::Base::MembersReply>> Object_v1_0::getMembersMethod() const {
    return prepare<dto::Base::MembersReply>("members");
}

std::shared_ptr<BoundMethod<dto::Base::MethodsReply>> Object_v1_0::getMethodsMethod() const {
    return prepare<dto::Base::MethodsReply>("methods");
}

std::shared_ptr<BoundMethod<std::vector<Object_v1_0::MethodSignature>>>
Object_v1_0::getMethodsVerboseMethod() const {
    return prepare<std::vector<MethodSignature>>("methodsVerbose");
}

std::shared_ptr<BoundMethod<Object_v1_0::Available>> Object_v1_0::getAvailableMethod() const {
    return prepare<Available>("available");
}

std::shared_ptr<Method> Object_v1_0::getReserveMethod(std::string first, std::string second) const {
    return prepare("reserve", TAVOXTranscode::makeRequest<dto::Base::ReserveRequest>(0, std::move(first),
                                                                                     std::move(second)));
}

std::shared_ptr<Method> Object_v1_0::getUnreserveMethod() const { return prepare("unreserve"); }

template <class Result>
Result Object_v1_0::execute(std::shared_ptr<BoundMethod<Result>> method) const {
    const auto connection = device();
    if (!connection)
        throw Error("Device no longer exists for object: " + getFullName());
    connection->call(method);
    return method->value();
}

std::string Object_v1_0::type() const { return execute(getTypeMethod()).type; }

Version Object_v1_0::version() const { return Version(execute(getVersionMethod()).version); }

std::vector<Object_v1_0::MemberNameIDPair> Object_v1_0::members() const {
    std::vector<MemberNameIDPair> pairs;
    for (auto& member : execute(getMembersMethod()).members)
        pairs.push_back({std::move(member.name), member.id});
    return pairs;
}

std::vector<Object_v1_0::MethodNameIDPair> Object_v1_0::methods() const {
    std::vector<MethodNameIDPair> pairs;
    for (auto& method : execute(getMethodsMethod()).methods)
        pairs.push_back({std::move(method.name), method.id});
    return pairs;
}

std::string Object_v1_0::toString() const {
    const std::string versionText = version();
    const auto typeName = type();
    const auto memberNames = joinedNames(members());
    const auto methodNames = joinedNames(methods());
    return "type=" + typeName + ", version=" + versionText + ", members={" + memberNames + "}, methods={" +
           methodNames + "}";
}

} // namespace TAVO
