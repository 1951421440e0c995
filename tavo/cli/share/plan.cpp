#include <tavo/cli/share/plan.h>

#include <algorithm>
#include <random>
#include <utility>

#include <tavo/client/wire/input_stream.h>

namespace TAVO::cli {

namespace {

// A request may hold millions of calls: no more of them are answered, or kept in mind, than this.
constexpr std::size_t mostAnswers = 4096;
constexpr std::uint32_t mostCallsOfStrangers = 65536;
constexpr std::size_t mostAnswerBytes = std::size_t{4} << 20;

namespace device_error {
constexpr std::uint32_t locked = 1001;
constexpr std::uint32_t malformedParameters = 1004;
constexpr std::uint32_t tooLarge = 1005;
constexpr std::uint32_t login = 1013;
} // namespace device_error

/// Reads `count` texts, which must be all that there is.
std::optional<std::vector<std::string>> textsIn(std::span<const std::uint8_t> bytes, std::size_t count) {
    TAVOX::InputStream in(bytes.data(), bytes.size());
    std::vector<std::string> texts;
    while (texts.size() < count) {
        const auto length = static_cast<std::uint32_t>(in.readInt32());
        const auto* text = in.readSpan(length);
        if (in.failed())
            return std::nullopt;
        texts.emplace_back(text, text + length);
    }
    return in.remaining() == 0 ? std::optional(texts) : std::nullopt;
}

/// A result of return code 0.
Plan::Bytes success() {
    Plan::Bytes result;
    server::appendWord(result, 0);
    return result;
}

} // namespace

Plan::Plan(Bytes request, FrontDesk desk)
    : request_(std::move(request)) {
    server::RequestFrame frame(request_);
    clientLockId_ = frame.lockId();
    isAuthorised_ = desk.grants.holds(clientLockId_);
    if (!isAuthorised_ && frame.callCount() > mostCallsOfStrangers)
        fail(device_error::tooLarge, "The request is too large");
    server::CallFrame former;
    auto meaning = CallMeaning::work;
    for (std::uint32_t index = 0; index < frame.callCount() && !error_; ++index) {
        const auto call = frame.nextCall();
        // Large batches repeat their calls.
        const bool isRepeated = index > 0 && call.instanceId == former.instanceId &&
                                call.methodId == former.methodId &&
                                call.parameters.empty() == former.parameters.empty();
        if (!isRepeated)
            meaning = desk.descriptions.meaningOf(call);
        former = call;
        take(call, meaning, desk);
        if (!error_)
            ++callCount_;
    }
}

void Plan::take(const server::CallFrame& call, CallMeaning meaning, FrontDesk& desk) {
    switch (meaning) {
    case CallMeaning::description:
        return describe(call, desk);
    case CallMeaning::lock:
        return lock(call, desk);
    case CallMeaning::unlock:
        return unlock(call, desk);
    case CallMeaning::login:
        return login(call, desk);
    case CallMeaning::change:
    case CallMeaning::work:
        bringsChange_ = bringsChange_ || meaning == CallMeaning::change;
        if (!isAuthorised_)
            fail(device_error::locked, desk.account.user);
    }
}

void Plan::describe(const server::CallFrame& call, const FrontDesk& desk) {
    const auto* known = desk.descriptions.find(call);
    if (known && answers_.size() < mostAnswers && answerBytes_ + known->size() < mostAnswerBytes)
        answer(*known);
    else if (descriptions_.size() < mostAnswers)
        descriptions_.push_back({callCount_, call});
}

bool Plan::requireCredentials(const server::CallFrame& call, const FrontDesk& desk) {
    const auto shown = textsIn(call.parameters, 2);
    if (!shown)
        fail(device_error::malformedParameters, "The parameters are too short or too long");
    else if (shown->front() != desk.account.user)
        fail(device_error::locked, desk.account.user);
    else if (shown->back() != desk.account.password.text())
        fail(device_error::login, "Wrong user name or password");
    return !error_;
}

void Plan::lock(const server::CallFrame& call, FrontDesk& desk) {
    if (!requireCredentials(call, desk))
        return;
    if (!isAuthorised_) {
        clientLockId_ = desk.grants.grant();
        isAuthorised_ = true;
    }
    auto result = success();
    server::appendWord(result, clientLockId_);
    answer(std::move(result));
}

void Plan::unlock(const server::CallFrame& call, FrontDesk& desk) {
    if (!requireCredentials(call, desk))
        return;
    desk.grants.revoke(clientLockId_);
    isAuthorised_ = false;
    answer(success());
}

void Plan::login(const server::CallFrame& call, FrontDesk& desk) {
    constexpr std::size_t challengeBytes = 16;
    const auto user = textsIn(call.parameters, 1);
    if (!user)
        return fail(device_error::malformedParameters, "The parameters are too short or too long");
    if (!isAuthorised_ || user->front() != desk.account.user)
        return fail(device_error::login, "Only the user who took the lock can log in");
    std::random_device random;
    auto result = success();
    server::appendWord(result, challengeBytes);
    while (result.size() < 2 * sizeof(std::uint32_t) + challengeBytes)
        server::appendWord(result, random());
    answer(std::move(result));
}

void Plan::answer(Bytes result) {
    if (answers_.size() >= mostAnswers)
        return fail(device_error::tooLarge, "The request holds too many calls that the share answers");
    answerBytes_ += result.size();
    answers_.push_back({callCount_, std::move(result)});
}

void Plan::fail(std::uint32_t code, std::string message) {
    error_ = server::ErrorFrame{callCount_, code, std::move(message)};
}

std::uint32_t Plan::indexOf(std::uint32_t position) const {
    auto index = position;
    for (const auto& given : answers_) {
        if (given.index > index)
            break;
        ++index;
    }
    return index;
}

server::CallFrame Plan::callForDevice(std::uint32_t position) const {
    server::RequestFrame frame(request_);
    server::CallFrame call;
    const auto index = indexOf(position);
    for (std::uint32_t passed = 0; passed <= index && passed < frame.callCount(); ++passed)
        call = frame.nextCall();
    return call;
}

std::span<const std::uint8_t> Plan::requestForDevice(std::uint32_t lockId) {
    server::RequestFrame frame(request_);
    if (callsForDevice() == frame.callCount()) {
        server::setLockId(request_, lockId);
        return request_;
    }
    composed_.clear();
    server::appendWord(composed_, lockId);
    server::appendWord(composed_, callsForDevice());
    auto given = answers_.begin();
    for (std::uint32_t index = 0; index < callCount_; ++index) {
        const auto call = frame.nextCall();
        if (given != answers_.end() && given->index == index) {
            ++given;
            continue;
        }
        server::appendWord(composed_, call.instanceId);
        server::appendWord(composed_, call.methodId);
        server::appendWord(composed_, static_cast<std::uint32_t>(call.parameters.size()));
        composed_.insert(composed_.end(), call.parameters.begin(), call.parameters.end());
    }
    return composed_;
}

std::vector<std::string> Plan::callNames(const Descriptions& descriptions) const {
    constexpr std::size_t mostNames = 32;
    constexpr std::uint32_t mostCalls = 4096;
    std::vector<std::string> names;
    server::RequestFrame frame(request_);
    server::CallFrame former;
    const auto count = std::min(frame.callCount(), mostCalls);
    for (std::uint32_t index = 0; index < count && names.size() < mostNames; ++index) {
        const auto call = frame.nextCall();
        const bool isRepeated =
            index > 0 && call.instanceId == former.instanceId && call.methodId == former.methodId;
        former = call;
        if (isRepeated)
            continue;
        auto name = descriptions.nameOf(call);
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(std::move(name));
    }
    return names;
}

} // namespace TAVO::cli
