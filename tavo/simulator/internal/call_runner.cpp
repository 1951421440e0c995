#include <tavo/simulator/internal/call_runner.h>

#include <algorithm>
#include <utility>

#include <tavo/client/wire/byte_order.h>
#include <tavo/client/wire/input_stream.h>

namespace TAVO::simulator {

namespace {

constexpr std::uint8_t strayByte = 0xA5;

void append(std::vector<std::uint8_t>& bytes, std::uint32_t number) {
    bytes.resize(bytes.size() + sizeof number);
    TAVOX::storeBigEndian(bytes.data() + bytes.size() - sizeof number, number);
}

/// The fault, if any, that is to spoil the delivery of an answer.
std::optional<Fault> deliveryFault(const std::vector<Fault>& faults) {
    for (const auto& fault : faults)
        if (isOfDelivery(fault))
            return fault;
    return std::nullopt;
}

} // namespace

CallRunner::CallRunner(Appliance& appliance, std::uint64_t request, std::uint64_t connection,
                       std::vector<Fault> faults, const Log& log)
    : appliance_(appliance)
    , request_(request)
    , connection_(connection)
    , faults_(std::move(faults))
    , log_(log) {}

template <class Kind>
const Kind* CallRunner::fault() const {
    for (const auto& candidate : faults_)
        if (const auto* found = std::get_if<Kind>(&candidate))
            return found;
    return nullptr;
}

Response CallRunner::run(std::span<const std::uint8_t> request) {
    TAVOX::InputStream in(request.data(), request.size());
    CallContext context(appliance_, static_cast<std::uint32_t>(in.readInt32()), connection_);
    const auto* forced = fault<faults::DeviceError>();
    const auto count = static_cast<std::uint32_t>(in.readInt32());
    const auto wanted = forced ? std::min(count, forced->results) : count;
    while (resultCount_ < wanted && !error_) {
        Call call;
        call.instanceId = static_cast<std::uint32_t>(in.readInt32());
        call.methodId = static_cast<std::uint32_t>(in.readInt32());
        const auto size = static_cast<std::uint32_t>(in.readInt32());
        call.parameters = {in.readSpan(size), size};
        carryOut(call, context);
    }
    if (forced) {
        while (resultCount_ < forced->results)
            addResult(nullptr, {0, nullptr});
        error_ = Error{forced->code, forced->results, forced->message};
    }
    auto made = response();
    made.delay = context.totalDelay();
    made.closesAllConnections = context.closesConnections();
    return made;
}

Response CallRunner::refuse() {
    error_ = Error{device_error::requestTooLarge, 0, "The request is too large"};
    auto made = response();
    made.closesConnection = true;
    return made;
}

const faults::ReturnCode* CallRunner::forcedReturn() const {
    for (const auto& candidate : faults_)
        if (const auto* found = std::get_if<faults::ReturnCode>(&candidate))
            if (found->index == resultCount_)
                return found;
    return nullptr;
}

void CallRunner::carryOut(const Call& call, CallContext& context) {
    CallRecord record;
    record.request = request_;
    record.connection = connection_;
    record.lockId = context.lockId();
    record.instanceId = call.instanceId;
    record.parameters = Value(Value::Record{});

    const SimulatedObject::Method* method = nullptr;
    const auto position = resultCount_;
    const auto fail = [&](std::uint32_t code, const std::string& message) {
        error_ = Error{code, position, message};
        record.error = code;
        record.returnCode = return_code::failure;
        if (code == device_error::execution)
            addResult(method->row, {return_code::failure, nullptr});
    };
    try {
        const auto* object = appliance_.find(call.instanceId);
        if (!object)
            throw DeviceFault(device_error::unknownObject,
                              "There is no object with instance id " + std::to_string(call.instanceId));
        record.object = object->fullName();
        method = object->findMethod(call.methodId);
        if (!method)
            throw DeviceFault(device_error::unknownMethod, "Object '" + record.object +
                                                               "' has no method with id " +
                                                               std::to_string(call.methodId));
        record.method = std::string(method->row->name);
        const auto result = invoke(*method, call, context, record);
        record.returnCode = result.code;
        addResult(method->row, result);
    } catch (const DeviceFault& fault) {
        if (fault.code() == device_error::execution && !method)
            fail(device_error::unknownMethod, fault.what());
        else
            fail(fault.code(), fault.what());
    } catch (const std::exception& failure) {
        fail(device_error::execution, failure.what());
    }
    log_(std::move(record));
}

dto::result CallRunner::invoke(const SimulatedObject::Method& method, const Call& call, CallContext& context,
                               CallRecord& record) {
    std::shared_ptr<dto::request_packet> request;
    TAVOX::InputStream in(call.parameters.data(), call.parameters.size());
    if (method.row->request) {
        request = method.row->request->create();
        method.row->request->read(in, *request);
    }
    if (in.failed() || in.remaining() > 0)
        throw DeviceFault(device_error::malformedParameters,
                          std::string("The parameters of '") + record.object + "." + record.method +
                              "' are " + (in.failed() ? "too short" : "too long"));
    if (request)
        record.parameters = method.row->request->toValue(*request);
    if (method.access == Access::locked)
        appliance_.lock().requireFreeOrHeldBy(context.lockId());
    if (const auto* forced = forcedReturn())
        return {forced->code, nullptr};
    try {
        return method.call(request.get(), context);
    } catch (const Refusal& refusal) {
        return {refusal.code(), nullptr};
    }
}

void CallRunner::addResult(const TAVOXTranscode::MethodRow* row, const dto::result& result) {
    results_.beginSizedBlock();
    results_.writeUInt32(static_cast<std::uint32_t>(result.code));
    if (row && row->reply)
        row->reply->write(results_, result.reply ? *result.reply : *row->reply->create());
    results_.endSizedBlock();
    ++resultCount_;
}

Response CallRunner::response() const {
    using Field = faults::Size::Field;
    const auto announced = [&](Field field, std::uint64_t size) {
        for (const auto& candidate : faults_)
            if (const auto* found = std::get_if<faults::Size>(&candidate))
                if (found->field == field)
                    return found->bytes;
        return static_cast<std::uint32_t>(size);
    };

    Response made;
    made.spoilt = deliveryFault(faults_);
    auto& bytes = made.bytes;
    append(bytes, announced(Field::status, 0));
    append(bytes, announced(Field::error, error_ ? 12 + error_->message.size() : 0));
    if (error_) {
        append(bytes, error_->position);
        append(bytes, error_->code);
        append(bytes, static_cast<std::uint32_t>(error_->message.size()));
        bytes.insert(bytes.end(), error_->message.begin(), error_->message.end());
    }
    const auto* count = fault<faults::Count>();
    append(bytes, count ? count->results : resultCount_);
    const auto firstResult = bytes.size();
    for (const auto chunk : results_.chunks())
        bytes.insert(bytes.end(), chunk.begin(), chunk.end());
    if (resultCount_ > 0) {
        auto* size = bytes.data() + firstResult;
        TAVOX::storeBigEndian(size, announced(Field::result, TAVOX::loadBigEndian<std::uint32_t>(size)));
    }
    for (const auto& candidate : faults_)
        if (const auto* found = std::get_if<faults::Stray>(&candidate))
            bytes.insert(bytes.end(), found->bytes, strayByte);
    return made;
}

} // namespace TAVO::simulator
