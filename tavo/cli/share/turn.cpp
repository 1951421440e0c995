#include <tavo/cli/share/turn.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace TAVO::cli {

namespace {

constexpr std::uint32_t unknownObject = 1002;
constexpr std::uint32_t unknownMethod = 1003;
constexpr std::uint32_t executionFailed = 1006;

} // namespace

Turn::Turn(Plan::Bytes request, FrontDesk desk, ReplyTarget& target)
    : plan_(std::move(request), desk)
    , descriptions_(desk.descriptions)
    , target_(&target) {}

void Turn::append(std::span<const std::uint8_t> bytes) {
    if (target_)
        target_->append(bytes);
}

void Turn::appendResult(std::span<const std::uint8_t> result) {
    Plan::Bytes size;
    server::appendWord(size, static_cast<std::uint32_t>(result.size()));
    append(size);
    append(result);
    ++index_;
}

void Turn::appendAnswers() {
    const auto& answers = plan_.answers();
    for (; nextAnswer_ < answers.size() && answers[nextAnswer_].index == index_ && index_ < wanted_;
         ++nextAnswer_)
        appendResult(answers[nextAnswer_].result);
}

void Turn::answerAlone() {
    Plan::Bytes reply;
    wanted_ = plan_.callCount();
    errorCode_ = plan_.error() ? plan_.error()->code : 0;
    server::appendReplyHead(reply, plan_.error(), wanted_);
    append(reply);
    appendAnswers();
    if (target_)
        target_->finish();
}

void Turn::refuse(std::uint32_t code, const std::string& message) {
    Plan::Bytes reply;
    errorCode_ = code;
    server::appendReplyHead(reply, server::ErrorFrame{0, code, message}, 0);
    append(reply);
    if (target_)
        target_->finish();
}

void Turn::abandon() {
    if (auto* target = std::exchange(target_, nullptr))
        target->abandon();
}

void Turn::complete() {
    for (auto& [call, result] : learned_)
        descriptions_.learn(call, std::move(result));
    if (target_)
        target_->finish();
}

// The call that failed with 1006 has a result; for other errors the results end before the failed call.
std::uint32_t Turn::resultsWith(const server::ErrorFrame& error, std::uint32_t resultCount) const {
    if (resultCount == 0)
        return error.code == executionFailed ? 0 : plan_.indexOf(0);
    if (error.code == executionFailed)
        return plan_.indexOf(resultCount - 1) + 1;
    return resultCount < plan_.callsForDevice() ? plan_.indexOf(resultCount) : plan_.callCount();
}

bool Turn::concernsKnownObject(const server::ErrorFrame& error, std::uint32_t resultCount) const {
    return (error.code == unknownObject || error.code == unknownMethod) &&
           resultCount < plan_.callsForDevice() &&
           descriptions_.knows(plan_.callForDevice(resultCount).instanceId);
}

void Turn::head(std::span<const std::uint8_t> status, const std::optional<server::ErrorFrame>& error,
                std::uint32_t resultCount) {
    if (resultCount > plan_.callsForDevice() || (!error && resultCount < plan_.callsForDevice()))
        throw std::runtime_error("the reply has a wrong number of results");
    auto told = plan_.error();
    wanted_ = plan_.callCount();
    if (error) {
        wanted_ = resultsWith(*error, resultCount);
        told = error;
        if (error->position < plan_.callsForDevice())
            told->position = plan_.indexOf(error->position);
        stale_ = concernsKnownObject(*error, resultCount);
    }
    errorCode_ = told ? told->code : 0;
    Plan::Bytes bytes;
    server::appendReplyHead(bytes, told, wanted_, status);
    append(bytes);
    appendAnswers();
}

const Plan::Description* Turn::describedNow() const {
    const auto& described = plan_.descriptions();
    return nextDescription_ < described.size() && described[nextDescription_].index == index_
               ? &described[nextDescription_]
               : nullptr;
}

void Turn::resultBegins(std::uint32_t size) {
    Plan::Bytes bytes;
    server::appendWord(bytes, size);
    append(bytes);
    if (describedNow() && size <= Descriptions::mostBytesOfRequest - learnedBytes_) {
        learnedBytes_ += size;
        learning_.emplace();
    }
}

void Turn::resultBytes(std::span<const std::uint8_t> bytes) {
    append(bytes);
    if (learning_)
        learning_->insert(learning_->end(), bytes.begin(), bytes.end());
}

void Turn::resultEnds() {
    if (const auto* described = describedNow()) {
        if (learning_)
            learned_.emplace_back(described->call, std::move(*learning_));
        learning_.reset();
        ++nextDescription_;
    }
    ++index_;
    appendAnswers();
}

} // namespace TAVO::cli
