#include <tavo/cli/observed_transport.h>

#include <utility>

namespace TAVO::cli {

ObservedTransport::ObservedTransport(std::unique_ptr<Transport> connection, std::shared_ptr<Answers> answers,
                                     std::unique_ptr<WaitingLine> waiting, bool patient)
    : connection_(std::move(connection))
    , answers_(std::move(answers))
    , waiting_(std::move(waiting))
    , patient_(patient)
    , limit_(connection_->timeLimit()) {}

void ObservedTransport::send(const TAVOX::OutputStream::Chunks& request) {
    answers_->begun = false;
    connection_->send(request);
}

void ObservedTransport::receiveAll(std::uint8_t* buffer, std::uint64_t length) {
    connection_->receiveAll(buffer, length);
    noteAnswer();
}

const std::uint8_t* ObservedTransport::receiveInPlace(std::uint64_t length) {
    const auto* bytes = connection_->receiveInPlace(length);
    if (bytes != nullptr)
        noteAnswer();
    return bytes;
}

void ObservedTransport::setTimeLimit(TimeLimit limit) {
    connection_->setTimeLimit(isUnlimited() ? std::nullopt : limit);
    limit_ = limit;
}

void ObservedTransport::noteAnswer() {
    answers_->begun = true;
    waiting_.reset();
    const bool limitBegins = isUnlimited();
    answers_->any = true;
    if (limitBegins)
        connection_->setTimeLimit(limit_);
}

} // namespace TAVO::cli
