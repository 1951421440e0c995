#include <tests/hostile/expectation.h>

#include <algorithm>

#include <tests/hostile/reply_model.h>

namespace hostile {

namespace {

std::string outcomeText(const std::string& name, const std::string& outcome, std::size_t results) {
    return name + ": " + outcome + ", " + std::to_string(results) + " results";
}

std::string stepName(std::size_t place) {
    return place == batchPlace ? "batch" : place == faultyPlace ? "faulty" : "info";
}

std::string stepText(std::size_t place, const Reading& reading) {
    return outcomeText(stepName(place), reading.outcome, reading.results);
}

Reading usualReading(std::size_t place) {
    const auto& exchange = conversation()[place];
    return readingOf(exchange.calls, exchange.reply());
}

/// What the client and the peer see up to the exchange at `place`, which the peer sees but the client has not
/// yet finished.
Expectation usualUntil(std::size_t place) {
    Expectation expected;
    expected.peer.push_back("connection");
    for (std::size_t i = 0; i <= place; ++i)
        expected.peer.push_back(conversation()[i].name);
    if (place > lastOfOpening)
        expected.client.push_back("open: ok");
    for (auto i = lastOfOpening + 1; i < place; ++i)
        expected.client.push_back(stepText(i, usualReading(i)));
    return expected;
}

/// The client has taken the reply at `place` for good, and nothing else happens.
void goOnAsUsual(Expectation& expected, std::size_t place) {
    if (place <= lastOfOpening)
        expected.client.push_back("open: ok");
    for (auto i = std::max(place, lastOfOpening + 1); i < unlockPlace; ++i)
        expected.client.push_back(stepText(i, usualReading(i)));
    for (auto i = place + 1; i < places; ++i)
        expected.peer.push_back(conversation()[i].name);
}

/// What the client does not find in a reply that it could read, before it sends the next request.
std::string missedIn(std::size_t place, const Reading& reading) {
    const auto& needed = conversation()[place].neededNext;
    if (!needed.empty() &&
        std::find(reading.blocks.begin(), reading.blocks.end(), needed) == reading.blocks.end())
        return describe("SpecificationError", "Could not find Method ID for Method: " + needed);
    if (place == keyPlace && reading.blocks != usualReading(place).blocks)
        return describe("TAVOKeyError", "TAVO authentication key not matched!");
    return {};
}

bool openingEnds(std::size_t place, const Reading& reading) {
    return place == lastOfOpening || (place == rootMembersPlace && reading.blocks.empty());
}

void expectAgain(Expectation& expected, std::size_t unexpected, const std::string& refusal) {
    expected.client.push_back("again: " + std::to_string(unexpected) + " unexpected, " +
                              (refusal.empty() ? "ok" : refusal));
}

/// The opening fails after the exchange at `place`, with this much of the connection left.
void expectReleaseOfHalfOpened(Expectation& expected, bool locked, std::size_t left,
                               const std::string& refusal) {
    if (locked && left == 0 && refusal.empty())
        expected.peer.insert(expected.peer.end(), {"connection", "device.unlock"});
}

void afterBytesInOpening(Expectation& expected, std::size_t place, const Reading& reading,
                         const std::string& refusal) {
    auto outcome = reading.outcome;
    if (reading.ok()) {
        outcome = missedIn(place, reading);
        if (outcome.empty() && openingEnds(place, reading)) {
            expected.client.push_back("open: ok");
            expected.troubledPlace = lastOfOpening;
            expectAgain(expected, reading.left, refusal);
            return;
        }
        if (outcome.empty())
            outcome = refusal;
    }
    expected.client.push_back("open: " + outcome);
    const bool locked = place > lockPlace || (place == lockPlace && reading.ok());
    expectReleaseOfHalfOpened(expected, locked, reading.left, refusal);
}

} // namespace

Expectation undisturbed() {
    auto expected = usualUntil(0);
    goOnAsUsual(expected, 0);
    return expected;
}

Expectation afterBytes(std::size_t place, const Bytes& sent, const std::string& refusal) {
    const auto& exchange = conversation()[place];
    const auto reading = readingOf(exchange.calls, sent);
    auto expected = usualUntil(place);
    if (place == unlockPlace)
        return expected;
    if (refusal.empty() && sent == exchange.reply()) {
        expected.peer.push_back("connection");
        goOnAsUsual(expected, place);
        return expected;
    }
    if (place <= lastOfOpening) {
        afterBytesInOpening(expected, place, reading, refusal);
        return expected;
    }
    expected.client.push_back(stepText(place, reading));
    expected.troubledPlace = place;
    expectAgain(expected, reading.left, refusal);
    if (refusal.empty())
        expected.peer.insert(expected.peer.end(), {"connection", callAfterwards().name, "device.unlock"});
    return expected;
}

Expectation afterStrayBytes(std::size_t place, std::size_t count) {
    auto expected = usualUntil(place);
    if (place < lastOfOpening) {
        expected.client.push_back("open: " + unexpectedData);
        if (place >= lockPlace && count == 1)
            expected.peer.push_back("device.unlock");
        return expected;
    }
    if (place == lastOfOpening)
        expected.client.push_back("open: ok");
    else if (place < unlockPlace)
        expected.client.push_back(stepText(place, usualReading(place)));
    const auto next = place + 1;
    if (next < unlockPlace) {
        expected.client.push_back(outcomeText(stepName(next), unexpectedData, 0));
        expected.troubledPlace = next;
        expectAgain(expected, count - 1, {});
        expected.peer.insert(expected.peer.end(), {callAfterwards().name, "device.unlock"});
    }
    return expected;
}

} // namespace hostile
