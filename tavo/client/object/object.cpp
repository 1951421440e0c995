#include <tavo/client/object/object.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include <tavo/client/object/device.h>
#include <tavo/client/object/internal/name_path.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

namespace base_v1_0 = TAVOXTranscode::base_v1_0;

namespace {

[[noreturn]] void refuseName(const Object_v1_0& object, const char* what, const std::string& name) {
    throw withFacts(SpecificationError("Could not find Method " + std::string(what) + " for Method: " + name),
                    {.method = object.getFullName() + "." + name});
}

template <class Table>
const auto& lookUp(const Object_v1_0& object, const Table& table, const std::string& name, const char* what) {
    const auto found = table.find(name);
    if (found == table.end())
        refuseName(object, what, name);
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

Object_v1_0::Object_v1_0(Unasked, const std::shared_ptr<Device>& device, const std::string& name,
                         std::uint32_t instanceId, const std::shared_ptr<Container>& parent,
                         const EncoderList& encoders, const DecoderList& decoders)
    : Container(name, parent)
    , device_(device)
    , deviceAddress_(device.get())
    , instanceId_(instanceId)
    , encoders_(&encoders)
    , decoders_(&decoders) {
    enter(std::string(base_v1_0::methods.name), MethodsStaticID);
}

Object_v1_0::Object_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                         std::shared_ptr<Container> parent, const EncoderList& encoders,
                         const DecoderList& decoders)
    : Object_v1_0(Unasked(), device, name, instanceId, parent, encoders, decoders) {
    const auto listed = execute(getMethodsMethod());
    methods_.reserve(std::max(encoders.size(), decoders.size()));
    std::size_t others = 0;
    std::size_t nameBytes = 0;
    for (const auto& method : listed.methods) {
        if (!enter(method.name, method.id)) {
            ++others;
            nameBytes += method.name.size();
        }
    }
    if (others > 0)
        enterOthers(listed, others, nameBytes);
}

Object_v1_0::~Object_v1_0() = default;

bool Object_v1_0::enter(const std::string& name, std::uint32_t id) {
    const auto encoder = encoders_->find(name);
    const auto decoder = decoders_->find(name);
    const bool hasEncoder = encoder != encoders_->end();
    const bool hasDecoder = decoder != decoders_->end();
    if (!hasEncoder && !hasDecoder)
        return false;
    const auto place = std::ranges::lower_bound(methods_, std::string_view(name), {}, nameOfEntry);
    const bool isNew = place == methods_.end() || *place->name != name;
    auto& entry = isNew ? *methods_.insert(place, MethodEntry()) : *place;
    entry = {hasEncoder ? &encoder->first : &decoder->first, hasEncoder ? &encoder->second : nullptr,
             hasDecoder ? &decoder->second : nullptr, id, nullptr};
    return true;
}

const Object_v1_0::MethodEntry* Object_v1_0::entryOf(std::string_view name) const {
    const auto found = std::ranges::lower_bound(methods_, name, {}, nameOfEntry);
    return found == methods_.end() || *found->name != name ? nullptr : &*found;
}

void Object_v1_0::enterOthers(const dto::Base::MethodsReply& listed, std::size_t count,
                              std::size_t nameBytes) {
    others_.reserve(count);
    otherNames_.reserve(nameBytes + count);
    for (const auto& method : listed.methods) {
        if (entryOf(method.name))
            continue;
        others_.push_back({static_cast<std::uint32_t>(otherNames_.size()),
                           static_cast<std::uint32_t>(method.name.size()), method.id});
        otherNames_.append(method.name) += '\0'; // so that even empty names begin at different places
    }
    // Methods of the same name stay in the device's order: the last one counts.
    std::ranges::sort(others_, [this](const OtherMethod& left, const OtherMethod& right) {
        return std::pair(nameOf(left), left.nameBegin) < std::pair(nameOf(right), right.nameBegin);
    });
}

const std::uint32_t* Object_v1_0::otherMethod(const std::string& name) const {
    const auto byName = [this](const OtherMethod& method) { return nameOf(method); };
    const auto end = std::ranges::upper_bound(others_, std::string_view(name), {}, byName);
    if (end == others_.begin() || nameOf(*std::prev(end)) != name)
        return nullptr;
    return &std::prev(end)->id;
}

std::uint32_t Object_v1_0::getMethodID(const std::string& name) const {
    if (const auto* entry = entryOf(name))
        return entry->id;
    if (const auto* id = otherMethod(name))
        return *id;
    refuseName(*this, "ID", name);
}

TAVOXTranscode::Encoder Object_v1_0::getEncoder(const std::string& name) const {
    return lookUp(*this, *encoders_, name, "Encoder");
}

TAVOXTranscode::Decoder Object_v1_0::getDecoder(const std::string& name) const {
    return lookUp(*this, *decoders_, name, "Decoder");
}

Object_v1_0::Functions Object_v1_0::findFunctions(std::string_view name) const {
    const auto encoder = encoders_->find(name);
    const auto decoder = decoders_->find(name);
    return {encoder == encoders_->end() ? nullptr : encoder->second,
            decoder == decoders_->end() ? nullptr : decoder->second};
}

std::shared_ptr<const Method::Target> Object_v1_0::targetOf(std::string_view name) const {
    for (const auto place : recent_)
        if (place < methods_.size() && *methods_[place].name == name && methods_[place].isUpToDate())
            return methods_[place].target;
    const auto* entry = entryOf(name);
    if (!entry || !entry->encoder || !entry->decoder)
        return makeTarget(std::string(name));
    if (!entry->isUpToDate())
        entry->target = makeTarget(*entry->name);
    recent_[oldestRecent_] = static_cast<std::size_t>(entry - methods_.data());
    oldestRecent_ = (oldestRecent_ + 1) % recent_.size();
    return entry->target;
}

std::shared_ptr<const Method::Target> Object_v1_0::makeTarget(const std::string& name) const {
    const auto id = getMethodID(name);
    const auto encoder = getEncoder(name);
    const auto decoder = getDecoder(name);
    return std::make_shared<Method::Target>(
        Method::Target{this, id, encoder, decoder, std::make_shared<NamePath>(path_, name)});
}

std::shared_ptr<BoundMethod<dto::Base::TypeReply>> Object_v1_0::getTypeMethod() const {
    return make(base_v1_0::type);
}

std::shared_ptr<BoundMethod<dto::Base::VersionReply>> Object_v1_0::getVersionMethod() const {
    return make(base_v1_0::version);
}

std::shared_ptr<BoundMethod<dto::Base::MembersReply>> Object_v1_0::getMembersMethod() const {
    return make(base_v1_0::members);
}

std::shared_ptr<BoundMethod<dto::Base::MethodsReply>> Object_v1_0::getMethodsMethod() const {
    return make(base_v1_0::methods);
}

std::shared_ptr<BoundMethod<std::vector<Object_v1_0::MethodSignature>>>
Object_v1_0::getMethodsVerboseMethod() const {
    return make<std::vector<MethodSignature>>(base_v1_0::methodsVerbose);
}

std::shared_ptr<BoundMethod<Object_v1_0::Available>> Object_v1_0::getAvailableMethod() const {
    return make<Available>(base_v1_0::available);
}

std::shared_ptr<Method> Object_v1_0::getReserveMethod(std::string first, std::string second) const {
    return make(base_v1_0::reserve, 0, std::move(first), std::move(second));
}

std::shared_ptr<Method> Object_v1_0::getUnreserveMethod() const { return make(base_v1_0::unreserve); }

template <class Result>
Result Object_v1_0::execute(std::shared_ptr<BoundMethod<Result>> method) const {
    const auto connection = device();
    if (!connection)
        throw withFacts(Error("Device no longer exists for object: " + getFullName()),
                        {.connectionUsable = false, .method = method->getFullName()});
    connection->call(method);
    // Others who hold the Method, such as an application's own Device, expect its result there.
    return method.use_count() == 1 ? method->take() : method->value();
}

std::string Object_v1_0::type() const { return execute(getTypeMethod()).type; }

Version Object_v1_0::version() const { return Version(execute(getVersionMethod()).version); }

std::vector<Object_v1_0::MemberNameIDPair> Object_v1_0::members() const {
    auto reply = execute(getMembersMethod());
    std::vector<MemberNameIDPair> pairs;
    pairs.reserve(reply.members.size());
    for (auto& member : reply.members)
        pairs.push_back({std::move(member.name), member.id});
    return pairs;
}

std::vector<Object_v1_0::MethodNameIDPair> Object_v1_0::methods() const {
    auto reply = execute(getMethodsMethod());
    std::vector<MethodNameIDPair> pairs;
    pairs.reserve(reply.methods.size());
    for (auto& method : reply.methods)
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
