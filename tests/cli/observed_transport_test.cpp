#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/cli/observed_transport.h>

namespace {

using namespace TAVO;
using namespace TAVO::cli;
using namespace std::chrono_literals;

/// Answers with zeros, and remembers its time limit.
class Zeros : public Transport {
public:
    explicit Zeros(std::shared_ptr<std::vector<TimeLimit>> limits)
        : limits_(std::move(limits)) {}

    void send(const TAVOX::OutputStream::Chunks&) override {}
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override { std::fill_n(buffer, length, 0); }
    void setTimeLimit(TimeLimit limit) override { limits_->push_back(limit); }

private:
    std::shared_ptr<std::vector<TimeLimit>> limits_;
};

struct Observed {
    explicit Observed(bool patient)
        : transport(std::make_unique<Zeros>(limits), answers, nullptr, patient) {}

    void receive() {
        std::uint8_t byte = 1;
        transport.receiveAll(&byte, 1);
    }

    std::shared_ptr<std::vector<TimeLimit>> limits = std::make_shared<std::vector<TimeLimit>>();
    std::shared_ptr<Answers> answers = std::make_shared<Answers>();
    ObservedTransport transport;
};

TEST(ObservedTransport, TellsWhetherTheExchangeWasAnswered) {
    Observed observed(false);
    EXPECT_FALSE(observed.answers->any);
    observed.receive();
    EXPECT_TRUE(observed.answers->any);
    EXPECT_TRUE(observed.answers->begun);
    TAVOX::OutputStream request;
    observed.transport.send(request.chunks());
    EXPECT_TRUE(observed.answers->any);
    EXPECT_FALSE(observed.answers->begun);
}

TEST(ObservedTransport, LimitsEveryExchange) {
    Observed observed(false);
    observed.transport.setTimeLimit(5s);
    observed.receive();
    EXPECT_EQ(*observed.limits, std::vector<TimeLimit>{5s});
}

TEST(ObservedTransport, ThatIsPatientLimitsWhatFollowsTheFirstAnswer) {
    Observed observed(true);
    observed.transport.setTimeLimit(5s);
    EXPECT_EQ(observed.transport.timeLimit(), 5s);
    EXPECT_EQ(*observed.limits, std::vector<TimeLimit>{std::nullopt});
    observed.receive();
    EXPECT_EQ(*observed.limits, (std::vector<TimeLimit>{std::nullopt, 5s}));
    observed.receive();
    observed.transport.setTimeLimit(6s);
    EXPECT_EQ(*observed.limits, (std::vector<TimeLimit>{std::nullopt, 5s, 6s}));
}

} // namespace
