#include <tests/hostile/expectation.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>

#include <tests/hostile/client.h>
#include <tests/hostile/reply_model.h>

namespace hostile {

namespace {

std::string stepText(const std::string& name, const Reading& reading) {
    return hostile::stepText(name, reading.outcome, reading.results, reading.contents);
}

const Reading& usualReading(const Exchange& exchange) {
    static std::map<const Exchange*, Reading> readings;
    const auto known = readings.find(&exchange);
    if (known != readings.end())
        return known->second;
    return readings[&exchange] = readingOf(exchange.calls, exchange.reply);
}

std::string hexadecimal(std::uint32_t number) {
    std::array<char, 8> digits;
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return {digits.data(), end};
}

/// What one case comes to, put together step by step.
class Course {
public:
    /// What the client and the peer see up to the exchange at `place`, which the peer sees but the client has
    /// not yet finished.
    Course(const Conversation& conversation, std::size_t place)
        : conversation_(conversation)
        , place_(place) {
        expected_.peer.push_back("connection");
        for (std::size_t i = 0; i <= place; ++i)
            expected_.peer.push_back(conversation[i].name);
        if (place > conversation.lastOfOpening)
            expected_.client.push_back("open: ok");
        for (auto i = conversation.lastOfOpening + 1; i < place; ++i)
            addStep(i);
    }

    /// The client has taken the reply for good, and nothing else happens.
    /// @param anew the next request goes over a new connection, whose key is asked for before a lock or
    ///             unlock.
    Course& goOnAsUsual(bool anew) {
        if (place_ <= conversation_.lastOfOpening)
            expected_.client.push_back("open: ok");
        for (auto i = std::max(place_, conversation_.lastOfOpening + 1); i < conversation_.unlockPlace(); ++i)
            addStep(i);
        if (anew)
            expectPeer({"connection"});
        bool keyIsKnown = !anew || place_ < conversation_.keyPlace;
        for (auto i = place_ + 1; i < conversation_.places(); ++i) {
            if (!keyIsKnown && (i == conversation_.lockPlace || i == conversation_.unlockPlace())) {
                expectPeer({keyAfterwards().name});
                keyIsKnown = true;
            }
            expectPeer({conversation_[i].name});
        }
        return *this;
    }

    Course& afterBytes(const Bytes& sent, const std::string& refusal) {
        const auto& exchange = conversation_[place_];
        if (place_ == conversation_.unlockPlace())
            return *this;
        if (refusal.empty() && sent == exchange.reply)
            return goOnAsUsual(true);
        const auto reading = readingOf(exchange.calls, sent);
        if (place_ <= conversation_.lastOfOpening) {
            afterBytesInOpening(reading, refusal);
            return *this;
        }
        expected_.client.push_back(stepText(exchange.name, reading));
        expectAgain(place_, reading.left, refusal);
        if (refusal.empty())
            expectPeer({"connection", callAfterwards().name, keyAfterwards().name, "device.unlock"});
        return *this;
    }

    Course& afterStrayBytes(std::size_t count) {
        if (place_ < conversation_.lastOfOpening) {
            expected_.client.push_back("open: " + unexpectedData);
            if (place_ >= conversation_.lockPlace)
                expectUnlockAnew();
            return *this;
        }
        if (place_ == conversation_.lastOfOpening)
            expected_.client.push_back("open: ok");
        else if (place_ < conversation_.unlockPlace())
            addStep(place_);
        const auto next = place_ + 1;
        if (next < conversation_.unlockPlace()) {
            expected_.client.push_back(hostile::stepText(conversation_[next].name, unexpectedData, 0, {}));
            expectAgain(next, count - 1, {});
            expectPeer({callAfterwards().name, "device.unlock"});
        } else if (next == conversation_.unlockPlace()) {
            expectUnlockAnew();
        }
        return *this;
    }

    const Expectation& expected() const { return expected_; }

private:
    void addStep(std::size_t place) {
        const auto& exchange = conversation_[place];
        expected_.client.push_back(stepText(exchange.name, usualReading(exchange)));
    }

    void expectPeer(const std::vector<std::string>& more) {
        expected_.peer.insert(expected_.peer.end(), more.begin(), more.end());
    }

    /// A connection that is out of step, or has ended, is given up for the unlock.
    void expectUnlockAnew() { expectPeer({"connection", keyAfterwards().name, "device.unlock"}); }

    void expectAgain(std::size_t troubledPlace, std::size_t unexpected, const std::string& refusal) {
        expected_.troubledPlace = troubledPlace;
        expected_.client.push_back(againText(unexpected, refusal.empty() ? "ok" : refusal));
    }

    /// What the client does after a reply in the opening that it could read.
    WithoutNames nextAfter(const Reading& reading) const {
        using Then = WithoutNames::Then;
        const auto& exchange = conversation_[place_];
        if (reading.code != 0 && (place_ == conversation_.keyPlace || place_ == conversation_.lockPlace ||
                                  place_ == conversation_.rootMembersPlace))
            return {Then::fail,
                    describe("Error", "Error executing " + exchange.name.substr(exchange.name.find('.') + 1) +
                                          "() method on device: " + hexadecimal(reading.code))};
        const auto& needed = exchange.neededNext;
        if (!needed.empty() &&
            std::find(reading.blocks.begin(), reading.blocks.end(), needed) == reading.blocks.end())
            return {Then::fail,
                    describe("SpecificationError", "Could not find Method ID for Method: " + needed)};
        if (place_ == conversation_.keyPlace && reading.blocks != usualReading(exchange).blocks)
            return {Then::fail, describe("TAVOKeyError", "TAVO authentication key not matched!")};
        if (place_ == conversation_.lastOfOpening)
            return {Then::endOpening};
        if (reading.blocks.empty() && exchange.withoutNames.then == Then::fail)
            return {Then::fail, describe("SpecificationError", exchange.withoutNames.failure)};
        return reading.blocks.empty() ? exchange.withoutNames : WithoutNames();
    }

    void afterBytesInOpening(const Reading& reading, const std::string& refusal) {
        auto outcome = reading.outcome;
        if (reading.ok()) {
            const auto next = nextAfter(reading);
            if (next.then == WithoutNames::Then::endOpening) {
                expected_.client.push_back("open: ok");
                expectAgain(conversation_.lastOfOpening, reading.left, refusal);
                return;
            }
            outcome = next.then == WithoutNames::Then::fail ? next.failure : refusal;
        }
        expected_.client.push_back("open: " + outcome);
        const bool locked = place_ > conversation_.lockPlace ||
                            (place_ == conversation_.lockPlace && reading.ok() && reading.code == 0);
        if (locked && refusal.empty())
            expectUnlockAnew();
    }

    const Conversation& conversation_;
    std::size_t place_;
    Expectation expected_;
};

} // namespace

Expectation undisturbed(const Conversation& conversation) {
    return Course(conversation, 0).goOnAsUsual(false).expected();
}

Expectation afterBytes(const Conversation& conversation, std::size_t place, const Bytes& sent,
                       const std::string& refusal) {
    return Course(conversation, place).afterBytes(sent, refusal).expected();
}

Expectation afterStrayBytes(const Conversation& conversation, std::size_t place, std::size_t count) {
    return Course(conversation, place).afterStrayBytes(count).expected();
}

} // namespace hostile
