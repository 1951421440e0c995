#include <tavo/simulator/simulated_object.h>

#include <algorithm>
#include <stdexcept>

#include <tavo/client/object/method_tables.h>
#include <tavo/client/object/object.h>
#include <tavo/client/object/version.h>
#include <tavo/simulator/appliance.h>
#include <tavo/simulator/internal/library_types.h>
#include <tavo/simulator/internal/limits.h>
#include <tavo/simulator/internal/scramble.h>

namespace TAVO::simulator {

namespace {

dto::Base::Version wireVersion(const std::string& text) {
    const Version version(text);
    return {static_cast<std::uint32_t>(version.major), static_cast<std::uint32_t>(version.minor),
            static_cast<std::uint32_t>(version.bugfix)};
}

std::string fieldList(const std::vector<FieldDescription>& fields) {
    std::string text;
    for (const auto& field : fields)
        text += (text.empty() ? "" : ", ") + field.name + ": " + field.type;
    return "(" + text + ")";
}

std::string signatureOf(const TAVOXTranscode::MethodRow& row) {
    auto text = std::string(row.name) + (row.request ? fieldList(row.request->fields()) : "()");
    if (row.reply)
        text += " -> " + fieldList(row.reply->fields());
    return text;
}

} // namespace

SimulatedObject::SimulatedObject(std::string type, const std::string& version)
    : type_(std::move(type))
    , version_(wireVersion(version)) {
    registerLibraryTypes();
    for (const auto& row : TAVOXTranscode::base_v1_0::rows())
        addMethod(row);
    for (const auto& row : methodRows(type_, version))
        addMethod(row);
    serveBaseMethods();
}

SimulatedObject::~SimulatedObject() = default;

void SimulatedObject::setVersion(const std::string& text) { version_ = wireVersion(text); }

SimulatedObject& SimulatedObject::add(const std::string& name, std::unique_ptr<SimulatedObject> object) {
    auto& added = *object;
    adopt(name, std::move(object));
    return added; // cppcheck-suppress returnReference ; the tree owns it, not `object`
}

std::string SimulatedObject::fullName() const {
    const auto parent = parent_ ? parent_->fullName() : std::string();
    return parent.empty() ? name_ : parent + "." + name_;
}

std::uint32_t SimulatedObject::methodId(std::string_view method) const {
    const auto found = methods_.find(method);
    if (found == methods_.end() || !appliance_)
        throw std::out_of_range(fullName() + " has no method '" + std::string(method) + "'");
    return found->second.id;
}

void SimulatedObject::addMethod(const TAVOXTranscode::MethodRow& row) {
    if (appliance_)
        throw std::logic_error(fullName() + " is part of an appliance: too late for new methods");
    methods_[std::string(row.name)] = Method{&row, 0, Access::locked, nullptr};
}

void SimulatedObject::removeMethod(std::string_view method) {
    const auto found = methods_.find(method);
    if (found != methods_.end())
        methods_.erase(found);
}

void SimulatedObject::setHandler(std::string_view method,
                                 bool (*takes)(const TAVOXTranscode::RequestDescription*),
                                 bool (*gives)(const TAVOXTranscode::ReplyDescription*), Service serve,
                                 Access access) {
    const auto found = methods_.find(method);
    const auto place = type_ + " method '" + std::string(method) + "'";
    if (found == methods_.end())
        throw std::logic_error(place + " does not exist");
    if (!takes(found->second.row->request))
        throw std::logic_error(place + " takes other parameters than its handler");
    if (!gives(found->second.row->reply))
        throw std::logic_error(place + " answers with other data than its handler");
    found->second.serve = std::move(serve);
    found->second.access = access;
}

void SimulatedObject::serveBaseMethods() {
    using namespace dto::Base;
    namespace base = TAVOXTranscode::base_v1_0;
    on(
        base::type, [this] { return makeRecord<TypeReply>(type_); }, Access::open);
    on(
        base::version, [this] { return makeRecord<VersionReply>(version_); }, Access::open);
    on(
        base::members,
        [this] {
            MembersReply reply;
            for (const auto& member : members_)
                reply.members.push_back({member->name_, member->instanceId_});
            return reply;
        },
        Access::open);
    on(
        base::methods, [this] { return methodList(false); }, Access::open);
    on(
        base::methodsVerbose, [this] { return methodList(true); }, Access::open);
    on(
        base::available,
        [this] {
            const auto holder = reservation_.value_or(Reservation{});
            return makeRecord<AvailableReply>(!reservation_, holder.user, holder.info);
        },
        Access::open);
    on(base::reserve, [this](const ReserveRequest& request) {
        if (std::max(request.first.size(), request.second.size()) > limits::reservationText)
            throw Refusal(return_code::badArgument);
        const bool takesOver = request.flag != 0;
        if (reservation_ && reservation_->user != request.first && !takesOver)
            throw Refusal(return_code::busy);
        reservation_ = Reservation{request.first, request.second};
    });
    on(base::unreserve, [this] { reservation_.reset(); });
}

void SimulatedObject::reset() {}

Appliance& SimulatedObject::appliance() const {
    if (!appliance_)
        throw std::logic_error(type_ + " '" + name_ + "' is part of no appliance");
    return *appliance_;
}

void SimulatedObject::adopt(const std::string& name, std::unique_ptr<SimulatedObject> object) {
    const auto isNamed = [&](const auto& member) { return member->name_ == name; };
    if (name.empty() || name.find('.') != std::string::npos ||
        std::any_of(members_.begin(), members_.end(), isNamed))
        throw std::invalid_argument("'" + name + "' cannot be the name of a member of '" + fullName() + "'");
    object->requireHandlers();
    object->name_ = name;
    object->parent_ = this;
    members_.push_back(std::move(object));
    if (appliance_)
        appliance_->enter(*members_.back());
}

void SimulatedObject::requireHandlers() const {
    for (const auto& [name, method] : methods_)
        if (!method.serve)
            throw std::logic_error(type_ + " method '" + name + "' has no handler");
}

void SimulatedObject::assignMethodIds() {
    for (auto& [name, method] : methods_)
        method.id = name == "methods" ? Object_v1_0::MethodsStaticID : 0;
    for (auto& [name, method] : methods_)
        if (method.id == 0)
            method.id = idFor(fullName() + " " + name, [&](std::uint32_t id) { return findMethod(id); });
}

dto::Base::MethodsReply SimulatedObject::methodList(bool verbose) const {
    dto::Base::MethodsReply reply;
    for (const auto& [name, method] : methods_)
        reply.methods.push_back({name, method.id, verbose ? signatureOf(*method.row) : std::string()});
    std::sort(reply.methods.begin(), reply.methods.end(),
              [](const auto& left, const auto& right) { return left.id < right.id; });
    return reply;
}

const SimulatedObject::Method* SimulatedObject::findMethod(std::uint32_t id) const {
    for (const auto& [name, method] : methods_)
        if (method.id == id)
            return &method;
    return nullptr;
}

} // namespace TAVO::simulator
