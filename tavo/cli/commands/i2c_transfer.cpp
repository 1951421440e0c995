#include <tavo/cli/commands/i2c.h>

#include <algorithm>
#include <exception>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/consent.h>
#include <tavo/cli/output.h>
#include <tavo/cli/user_input.h>
#include <tavo/cli/values/i2c_messages.h>
#include <tavo/simulator/return_codes.h>

namespace TAVO::cli {

namespace {

using HWDebug::I2c_v1_0;
using Messages = std::vector<I2cMessage>;
using Bytes = std::vector<std::uint8_t>;

/// Sends messages with a repeated START between them and a STOP after the last. Those before a last pair of a
/// write and a read go one by one: nothing may be written after one that is not acknowledged.
class Transfer {
public:
    Transfer(Session& session, const I2c_v1_0& bus, const Messages& messages)
        : session_(session)
        , bus_(bus)
        , messages_(messages) {}

    /// What was read, by message; empty for a write.
    std::vector<Bytes> run() {
        try {
            while (read_.size() < messages_.size())
                if (lastTwoAreOneCall())
                    writeAndRead();
                else
                    sendNext();
        } catch (const std::exception&) {
            stop();
            throw;
        }
        return std::move(read_);
    }

private:
    const I2cMessage& next() const { return messages_[read_.size()]; }

    bool lastTwoAreOneCall() const {
        if (read_.size() + 2 != messages_.size())
            return false;
        const auto& second = messages_.back();
        return !next().reads && !next().data.empty() && second.reads && second.count != 0 &&
               next().address == second.address;
    }

    void writeAndRead() {
        const auto& second = messages_.back();
        const auto call = bus_.getTransferMethod(static_cast<int>(second.address), 0, next().data,
                                                 static_cast<int>(second.count));
        execute(call);
        read_.insert(read_.end(), {Bytes(), call->take().data});
        requireCount();
    }

    void sendNext() {
        const auto& message = next();
        const auto address = static_cast<int>(message.address);
        const bool last = read_.size() + 1 == messages_.size();
        if (message.reads) {
            const auto call = bus_.getReadMethod(address, true, last, static_cast<int>(message.count));
            execute(call);
            read_.push_back(call->take().data);
            requireCount();
        } else {
            execute(bus_.getWriteMethod(address, true, last, 0, message.data));
            read_.emplace_back();
        }
        open_ = last ? nullptr : &message;
    }

    void execute(const std::shared_ptr<Method>& call) {
        const auto number = read_.size() + 1;
        session_.run({call});
        if (call->returnCode() == simulator::return_code::notAcknowledged) {
            open_ = nullptr;
            throw Failure(ExitCode::refused,
                          fmt::format("{}: message {}, to address 0x{:02x}, was not acknowledged",
                                      bus_.getFullName(), number, next().address));
        }
        requireSuccess(*call);
    }

    void requireCount() const {
        const auto& message = messages_[read_.size() - 1];
        if (read_.back().size() != message.count)
            throw Failure(ExitCode::refused, fmt::format("message {} read {} bytes instead of {}",
                                                         read_.size(), read_.back().size(), message.count));
    }

    /// Gives the bus back if a message left it open.
    void stop() {
        const auto* message = std::exchange(open_, nullptr);
        if (!message)
            return;
        const auto address = static_cast<int>(message->address);
        try {
            if (message->reads)
                session_.release(bus_.getReadMethod(address, false, true, 0));
            else
                session_.release(bus_.getWriteMethod(address, false, true, 0, {}));
        } catch (const std::exception&) {
            // A more important exception is already on its way.
        }
    }

    Session& session_;
    const I2c_v1_0& bus_;
    const Messages& messages_;
    std::vector<Bytes> read_;
    /// The last message, if no STOP came after it.
    const I2cMessage* open_ = nullptr;
};

bool writes(const I2cMessage& message) { return !message.reads; }

/// For messages of which at least one writes.
std::string questionOf(const Messages& messages) {
    const auto first = std::find_if(messages.begin(), messages.end(), writes);
    return fmt::format("Write {} bytes to I2C address 0x{:02x}{}?", first->data.size(), first->address,
                       std::any_of(first + 1, messages.end(), writes) ? ", and more" : "");
}

} // namespace

void I2cTransferOptions::describe(OptionList& list) {
    list.add(
        "message", words,
        "rLENGTH[@ADDRESS] or wLENGTH[@ADDRESS] BYTE...; repeat for more messages. Without an address: that\n"
        "of the message before. BYTE= repeats the byte up to the length, BYTE+ and BYTE- count on",
        {.required = true, .valueName = "MESSAGE"});
    list.add("-y,--yes", yes, "Do not ask for confirmation");
}

void transferMessages(Session& session, Output& output, const I2cTransferOptions& options) {
    const auto messages = parseInput([&] { return parseI2cMessages(options.words); });
    const bool needsConsent = std::any_of(messages.begin(), messages.end(), writes);
    const Consent consent(options.yes || !needsConsent);
    const auto bus = chooseBus(session, options);
    if (needsConsent)
        consent.ask(questionOf(messages));
    const auto read = Transfer(session, *bus, messages).run();
    auto document = nlohmann::json::array();
    for (std::size_t i = 0; i < messages.size(); ++i) {
        nlohmann::json entry{{"address", messages[i].address}};
        if (messages[i].reads)
            entry["read"] = read[i];
        else
            entry["written"] = messages[i].data.size();
        document.push_back(std::move(entry));
    }
    output.show({{"object", bus->getFullName()}, {"messages", std::move(document)}}, [&](TextWriter& text) {
        for (std::size_t i = 0; i < messages.size(); ++i)
            if (messages[i].reads)
                text.print("{}\n", fmt::format("{:#04x}", fmt::join(read[i], " ")));
    });
}

} // namespace TAVO::cli
