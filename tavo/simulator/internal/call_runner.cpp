#include <tavo/simulator/internal/call_runner.h>

#include <algorithm>
#include <new>
#include <utility>

#include <tavo/client/wire/byte_order.h>
#include <tavo/simulator/internal/limits.h>

namespace TAVO::simulator {

namespace {

constexpr std::uint8_t strayByte = 0xA5;

/// The fault that changes the delivery of the answer, if any.
std::optional<Fault> deliveryFault(const std::vector<Fault>& faults) {
    for (const auto& fault : faults)
        if (isOfDelivery(fault))
            return fault;
    return std::nullopt;
}

} // namespace

CallRunner::CallRunner(Appliance& appliance, std::uint64_t request, std::uint64_t connection,
                       std::vector<Fault> faults, const Log& log, std::size_t mostAnswerBytes)
    : appliance_(appliance)
    , request_(request)
    , connection_(connection)
    , faults_(std::move(faults))
    , log_(log)
    , mostAnswerBytes_(mostAnswerBytes) {}

template <class Kind>
const Kind* CallRunner::fault() const {
    for (const auto& candidate : faults_)
        if (const auto* found = std::get_if<Kind>(&candidate))
            return found;
    return nullptr;
}

Response CallRunner::run(std::span<const std::uint8_t> request) {
    read(request);
    while (!proceed(Deadline::max()))
        ;
    return finish();
}

void CallRunner::begin(std::vector<std::uint8_t> request) {
    requestBytes_ = std::move(request);
    read(requestBytes_);
}

void CallRunner::read(std::span<const std::uint8_t> request) {
    frame_ = server::RequestFrame(request);
    wanted_ = frame_.callCount();
    if (const auto* forced = fault<faults::DeviceError>())
        wanted_ = std::min(wanted_, forced->results);
}

bool CallRunner::proceed(Deadline deadline) {
    CallContext context(appliance_, frame_.lockId(), connection_);
    context.delay(delay_);
    const auto formerHolder = appliance_.lock().holder();
    bool inTime = true;
    while (inTime && resultCount_ < wanted_ && !error_) {
        carryOut(frame_.nextCall(), context);
        inTime = std::chrono::steady_clock::now() < deadline;
    }
    delay_ = context.totalDelay();
    closesAllConnections_ = closesAllConnections_ || context.closesConnections();
    if (const auto& holder = appliance_.lock().holder(); holder && holder != formerHolder)
        lockTaken_ = holder->lockId;
    return resultCount_ >= wanted_ || error_;
}

Response CallRunner::finish() {
    if (const auto* forced = fault<faults::DeviceError>()) {
        while (resultCount_ < forced->results)
            addResult(nullptr, {0, nullptr});
        error_ = server::ErrorFrame{forced->results, forced->code, forced->message};
    }
    if (results_.failed())
        throw std::bad_alloc();
    auto made = response();
    made.delay = delay_;
    made.closesAllConnections = closesAllConnections_;
    made.lockId = lockTaken_ != 0 ? lockTaken_ : frame_.lockId();
    return made;
}

std::size_t CallRunner::heldBytes() const {
    return requestBytes_.size() + static_cast<std::size_t>(results_.total());
}

Response CallRunner::refuse() {
    error_ = server::ErrorFrame{0, device_error::requestTooLarge, "The request is too large"};
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

void CallRunner::carryOut(const server::CallFrame& call, CallContext& context) {
    CallRecord record;
    record.request = request_;
    record.connection = connection_;
    record.lockId = context.lockId();
    record.instanceId = call.instanceId;
    record.parameters = Value(Value::Record{});

    const SimulatedObject::Method* method = nullptr;
    const auto position = resultCount_;
    const auto fail = [&](std::uint32_t code, const std::string& message) {
        const bool whole = message.size() <= limits::messageBytes;
        error_ = server::ErrorFrame{position, code,
                                    whole ? message : message.substr(0, limits::messageBytes) + "..."};
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
    if (log_)
        log_(std::move(record));
}

dto::result CallRunner::invoke(const SimulatedObject::Method& method, const server::CallFrame& call,
                               CallContext& context, CallRecord& record) {
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
    if (request && log_ && call.parameters.size() <= limits::recordedBytes)
        record.parameters = method.row->request->toValue(*request);
    if (results_.total() >= mostAnswerBytes_)
        throw DeviceFault(device_error::requestTooLarge, "The answer is too large");
    if (method.access == Access::locked)
        appliance_.lock().requireFreeOrHeldBy(context.lockId());
    if (const auto* forced = forcedReturn())
        return {forced->code, nullptr};
    try {
        return method.serve(request.get(), context);
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
    Response made;
    made.spoilt = deliveryFault(faults_);
    auto& bytes = made.bytes;
    const auto* count = fault<faults::Count>();
    server::appendReplyHead(bytes, error_, count ? count->results : resultCount_);
    const auto firstResult = bytes.size();
    for (const auto chunk : results_.chunks())
        bytes.insert(bytes.end(), chunk.begin(), chunk.end());
    const auto announce = [&](std::size_t offset, std::uint32_t size) {
        TAVOX::storeBigEndian(bytes.data() + offset, size);
    };
    // The first of several for one field holds.
    for (auto candidate = faults_.rbegin(); candidate != faults_.rend(); ++candidate)
        if (const auto* size = std::get_if<faults::Size>(&*candidate)) {
            using Field = faults::Size::Field;
            if (size->field == Field::status)
                announce(0, size->bytes);
            else if (size->field == Field::error)
                announce(sizeof size->bytes, size->bytes);
            else if (resultCount_ > 0)
                announce(firstResult, size->bytes);
        }
    for (const auto& candidate : faults_)
        if (const auto* found = std::get_if<faults::Stray>(&candidate))
            bytes.insert(bytes.end(), found->bytes, strayByte);
    return made;
}

} // namespace TAVO::simulator
