#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/call.h>
#include <tavo/client/transcode/make_record.h>
#include <tavo/client/transcode/method_row.h>
#include <tavo/simulator/call_context.h>
#include <tavo/simulator/export.h>

namespace TAVO::simulator {

class Appliance;

/// For handlers: makes a reply from one argument per field.
using TAVOXTranscode::makeRecord;
using TAVOXTranscode::None;

/// Who may make a call while a user holds the appliance's lock.
enum class Access {
    /// Only the lock holder.
    locked,
    /// Everybody.
    open
};

/// Return code and reply of a handler that returns both.
template <class Reply>
struct Answer {
    std::int32_t code = 0;
    Reply reply;
};

/// The reservation of an object, in the client's own words.
struct Reservation {
    std::string user;
    std::string info;
    bool operator==(const Reservation&) const = default;
};

/// One remote object of the appliance: its type, version, members and methods.
///
/// A model derives from this class, and its constructor gives every method of the type a handler. Methods and
/// records are those of the client's proxies for the type and version, so each is described once. This class
/// serves the eight methods of every object.
///
/// @code
/// Relay::Relay()
///     : SimulatedObject("relay", "1.0") {
///     on(relay_v1_0::get,
///        [this](CallContext& call) { return makeRecord<GetReply>(stateAt(call.elapsed())); });
///     on(relay_v1_0::set, [this](const SetRequest& request) { set(request.state); });
/// }
/// @endcode
///
/// The ids of the object and its methods are derived from its full name: they are the same in every run and
/// follow no order.
///
/// Handlers run one at a time, with the appliance guarded (see Simulator::inspect); they must not block.
class TAVO_SIMULATOR_API SimulatedObject {
public:
    /// Takes the methods that the client library or an application's TypeFactory has for this type and
    /// version; if there are none, only the eight of every object. "1.0" is (1, 0, any) on the wire, "1.0.3"
    /// is (1, 0, 3).
    SimulatedObject(std::string type, const std::string& version);
    virtual ~SimulatedObject();
    SimulatedObject(const SimulatedObject&) = delete;
    SimulatedObject& operator=(const SimulatedObject&) = delete;

    const std::string& type() const { return type_; }
    /// The version that the object reports. Setting it does not change the methods.
    const dto::Base::Version& version() const { return version_; }
    void setVersion(const dto::Base::Version& version) { version_ = version; }
    /// @param text as in the constructor. @throws SpecificationError if it is not a version.
    void setVersion(const std::string& text);
    const std::string& name() const { return name_; }
    /// The names from the root to this object, joined with dots: "bench.lamp".
    std::string fullName() const;
    /// Valid once the object belongs to an appliance.
    std::uint32_t instanceId() const { return instanceId_; }
    /// @throws std::out_of_range if there is no such method or the object belongs to no appliance yet.
    std::uint32_t methodId(std::string_view method) const;

    /// Makes an object and adds it below this one.
    /// @throws std::invalid_argument for a name that is empty, contains a dot or is in use; std::logic_error
    ///         for a method without handler.
    template <class Object, class... Arguments>
    Object& add(const std::string& name, Arguments&&... arguments) {
        auto object = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
        auto& added = *object;
        adopt(name, std::move(object));
        return added;
    }
    /// Adds an existing object. @throws as the other add().
    SimulatedObject& add(const std::string& name, std::unique_ptr<SimulatedObject> object);
    const std::vector<std::unique_ptr<SimulatedObject>>& members() const { return members_; }

    /// Sets or replaces the handler of the call's method.
    ///
    /// The handler takes the request, if the call has one, and optionally a CallContext&. It returns the
    /// reply record or an Answer of it; for a call without reply nothing or the return code. It may throw
    /// Refusal and DeviceFault.
    /// @throws std::logic_error if the object has no such method or the method has other records.
    template <class Request, class Reply, class Handler>
    void on(const TAVOXTranscode::Call<Request, Reply>& call, Handler handler,
            Access access = Access::locked) {
        setHandler(call.name, matches<dto::request_packet, Request>, matches<dto::reply_packet, Reply>,
                   erased<Request, Reply>(std::move(handler)), access);
    }

    /// Adds a method that proxies of the type do not have. Give it a handler with on(). Call it before the
    /// object joins an appliance.
    /// @param row must outlive the object.
    void addMethod(const TAVOXTranscode::MethodRow& row);
    /// Removes a method: the object no longer lists or serves it.
    void removeMethod(std::string_view method);

    const std::optional<Reservation>& reservation() const { return reservation_; }
    void setReservation(std::optional<Reservation> reservation) { reservation_ = std::move(reservation); }

    /// Returns to the state after power-on. Called for every object when the appliance is reset.
    virtual void reset();

protected:
    /// The appliance that the object belongs to.
    /// @throws std::logic_error if it belongs to none yet.
    Appliance& appliance() const;

private:
    friend class Appliance;
    friend class CallRunner;

    using Service = std::function<dto::result(const dto::request_packet*, CallContext&)>;
    struct Method {
        const TAVOXTranscode::MethodRow* row = nullptr;
        std::uint32_t id = 0;
        Access access = Access::locked;
        Service serve;
    };

    template <class Packet, class Record>
    static bool matches(const TAVOXTranscode::RecordDescription<Packet>* description) {
        if constexpr (std::same_as<Record, None>)
            return !description;
        else
            return description && dynamic_cast<const Record*>(description->create().get());
    }

    template <class Request, class Handler>
    static decltype(auto) invoke(Handler& handler, const dto::request_packet* packet, CallContext& context) {
        if constexpr (std::same_as<Request, None>) {
            if constexpr (std::invocable<Handler&, CallContext&>)
                return handler(context);
            else
                return handler();
        } else {
            const auto& request = dynamic_cast<const Request&>(*packet);
            if constexpr (std::invocable<Handler&, const Request&, CallContext&>)
                return handler(request, context);
            else
                return handler(request);
        }
    }

    template <class Request, class Reply, class Handler>
    static Service erased(Handler handler) {
        return [handler = std::move(handler)](const dto::request_packet* request,
                                              CallContext& context) mutable -> dto::result {
            using Result = decltype(invoke<Request>(handler, request, context));
            if constexpr (std::is_void_v<Result>) {
                static_assert(std::same_as<Reply, None>, "the handler must return the reply");
                invoke<Request>(handler, request, context);
                return {0, nullptr};
            } else if constexpr (std::same_as<Reply, None>) {
                static_assert(std::same_as<Result, std::int32_t>, "a status is a std::int32_t");
                return {invoke<Request>(handler, request, context), nullptr};
            } else if constexpr (std::same_as<Result, Answer<Reply>>) {
                auto answer = invoke<Request>(handler, request, context);
                return {answer.code, std::make_shared<Reply>(std::move(answer.reply))};
            } else {
                return {0, std::make_shared<Reply>(invoke<Request>(handler, request, context))};
            }
        };
    }

    void adopt(const std::string& name, std::unique_ptr<SimulatedObject> object);
    void setHandler(std::string_view method, bool (*takes)(const TAVOXTranscode::RequestDescription*),
                    bool (*gives)(const TAVOXTranscode::ReplyDescription*), Service serve, Access access);
    void serveBaseMethods();
    void requireHandlers() const;
    void assignMethodIds();
    dto::Base::MethodsReply methodList(bool verbose) const;
    const Method* findMethod(std::uint32_t id) const;

    std::string type_;
    dto::Base::Version version_;
    std::string name_;
    std::uint32_t instanceId_ = 0;
    SimulatedObject* parent_ = nullptr;
    Appliance* appliance_ = nullptr;
    std::vector<std::unique_ptr<SimulatedObject>> members_;
    std::map<std::string, Method, std::less<>> methods_;
    std::optional<Reservation> reservation_;
};

} // namespace TAVO::simulator
