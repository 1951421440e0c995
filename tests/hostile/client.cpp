#include <tests/hostile/client.h>

#include <memory>
#include <new>
#include <type_traits>
#include <typeinfo>

#include <tavo/client/commonmodules/com.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/hwdebug/lpc.h>
#include <tavo/client/hwdebug/lpc_post_code_records.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/transcode/codec.h>
#include <tavo/client/wire/error.h>
#include <tests/hostile/reply_model.h>
#include <tests/support/all_types.h>

namespace hostile {

namespace {

std::string nameOf(const std::exception& failure) {
    const auto& type = typeid(failure);
    if (type == typeid(TAVO::NetworkError))
        return "NetworkError";
    if (type == typeid(TAVO::SpecificationError))
        return "SpecificationError";
    if (type == typeid(TAVO::ExecutionError))
        return "ExecutionError";
    if (type == typeid(TAVO::TAVOKeyError))
        return "TAVOKeyError";
    if (type == typeid(TAVO::Error))
        return "Error";
    return type.name();
}

TAVO::dto::Params parametersOf(const std::string& method, const Call& call) {
    using TAVO::TAVOXTranscode::makeRequest;
    if (method == "open")
        return makeRequest<TAVO::dto::com::OpenRequest>(115200, 8, true, false, 1, false, false, false,
                                                        false);
    if (method == "reserve")
        return makeRequest<TAVO::dto::Base::ReserveRequest>(0, "ann", "pc");
    if (method == "recv")
        return makeRequest<TAVO::dto::com::RecvRequest>(call.count);
    if (method == "login")
        return makeRequest<TAVO::dto::Device::LoginRequest>("ann");
    return {};
}

std::shared_ptr<TAVO::Method> prepare(const TAVO::Device& device, const Call& call) {
    const TAVO::Container* container = &device;
    std::shared_ptr<TAVO::Container> found;
    std::size_t begin = 0;
    for (auto end = call.fullName.find('.'); end != std::string::npos;
         begin = end + 1, end = call.fullName.find('.', begin)) {
        const auto part = call.fullName.substr(begin, end - begin);
        found = part == "device" ? device.getDevice() : container->getChild(part);
        container = found.get();
    }
    const auto name = call.fullName.substr(begin);
    return std::make_shared<TAVO::Method>(name, *container, parametersOf(name, call));
}

template <class T>
void add(Contents& contents, const T& value) {
    if constexpr (TAVO::TAVOXTranscode::Described<T>) {
        TAVO::TAVOXTranscode::forEachField<T>([&](const auto& field) { add(contents, value.*field.member); });
    } else if constexpr (std::is_arithmetic_v<T>) {
        contents.number(
            static_cast<std::make_unsigned_t<std::conditional_t<std::is_same_v<T, bool>, std::uint8_t, T>>>(
                value));
    } else if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, Bytes>) {
        contents.block({reinterpret_cast<const char*>(value.data()), value.size()});
    } else {
        for (const auto& element : value)
            add(contents, element);
        contents.number(value.size());
    }
}

/// Adds the reply if it is one of these.
template <class... Replies>
void addOneOf(Contents& contents, const TAVO::dto::reply_packet* reply) {
    const auto tryOne = [&](const auto* record) {
        if (record)
            add(contents, *record);
    };
    (tryOne(dynamic_cast<const Replies*>(reply)), ...);
}

void addReply(Contents& contents, const TAVO::dto::reply_packet* reply) {
    namespace dto = TAVO::dto;
    addOneOf<dto::Base::TypeReply, dto::Base::AvailableReply, dto::Base::HeaderStatusGetReply,
             dto::Device::InfoReply, dto::Device::LoginReply, dto::com::RecvReply,
             dto::lpc::HeaderConnectionsReply, dto::lpcPostCode::FifoGetReply>(contents, reply);
}

std::string executed(TAVO::Device& device, const Exchange& exchange) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    for (const auto& call : exchange.calls)
        queue->add(prepare(device, call));
    const auto outcome = outcomeOf([&] { device.multicall(queue); });
    std::size_t results = 0;
    Contents contents;
    for (const auto& method : queue->getMethods()) {
        if (!method->isResultSet())
            continue;
        ++results;
        addReply(contents, method->getResult().reply.get());
    }
    return stepText(exchange.name, outcome, results, contents);
}

std::string tryAgain(TAVO::Device& device) {
    for (std::size_t unexpected = 0;; ++unexpected) {
        const auto outcome = outcomeOf([&] { device.getDevice()->type(); });
        if (outcome != unexpectedData || unexpected == mostTries)
            return againText(unexpected, outcome);
    }
}

} // namespace

std::string outcomeOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& failure) {
        return describe(nameOf(failure), failure.what());
    }
    return "ok";
}

std::string stepText(const std::string& name, const std::string& outcome, std::size_t results,
                     const Contents& contents) {
    return name + ": " + outcome + ", " + std::to_string(results) + " results: " + contents.text();
}

std::string againText(std::size_t unexpected, const std::string& outcome) {
    if (unexpected >= mostTries)
        return "again: given up";
    return "again: " + std::to_string(unexpected) + " unexpected, " + outcome;
}

std::vector<std::string> converse(const Conversation& conversation, int port,
                                  std::optional<std::size_t> troubledPlace) {
    support::registerAllTypes();
    std::vector<std::string> events;
    std::shared_ptr<TAVO::Device> device;
    events.push_back("open: " + outcomeOf([&] {
                         device = TAVO::DeviceFactory::buildDevice("127.0.0.1", port, "ann", "pw", true);
                     }));
    if (!device)
        return events;
    for (auto place = conversation.lastOfOpening; place < conversation.unlockPlace(); ++place) {
        if (place > conversation.lastOfOpening)
            events.push_back(executed(*device, conversation[place]));
        if (troubledPlace && place >= *troubledPlace) {
            events.push_back(tryAgain(*device));
            break;
        }
    }
    return events;
}

} // namespace hostile
