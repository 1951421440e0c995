#include <tavo/cli/commands/commands.h>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/prometheus.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

namespace {

using Clock = std::chrono::steady_clock;
using CommonModules::Relay_v1_0;
using HWDebug::LpcPostCode_v1_0;

/// Interrupts what waits for the device when all of it together takes too long: each exchange has a limit,
/// but a device can demand thousands of them.
class TotalLimit {
public:
    explicit TotalLimit(Session& session)
        : session_(session)
        , thread_([this] { run(); }) {}
    TotalLimit(const TotalLimit&) = delete;
    TotalLimit& operator=(const TotalLimit&) = delete;
    ~TotalLimit() {
        {
            const std::lock_guard lock(mutex_);
            isDone_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }

    static constexpr std::chrono::seconds longest{30};

    bool isOver() {
        const std::lock_guard lock(mutex_);
        return isOver_;
    }

private:
    void run() {
        constexpr std::chrono::milliseconds again(50);
        std::unique_lock lock(mutex_);
        const auto isDone = [this] { return isDone_; };
        if (changed_.wait_for(lock, longest, isDone))
            return;
        isOver_ = true;
        do
            session_.interruptOpening();
        while (!changed_.wait_for(lock, again, isDone));
    }

    Session& session_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isDone_ = false;
    bool isOver_ = false;
    std::thread thread_;
};

struct Question {
    std::shared_ptr<Method> method;
    std::string object;
    /// The answer as a number; null once the device has refused the question.
    std::function<double()> value;
};

template <class Bound, class Field>
Question question(const Object_v1_0& object, std::shared_ptr<Bound> method, Field field) {
    auto value = [method, field] { return static_cast<double>(method->value().*field); };
    return {std::move(method), object.getFullName(), std::move(value)};
}

bool hasAnswer(const Question& question) {
    const auto& method = *question.method;
    return method.isResultSet() && method.returnCode() == 0;
}

/// What a device tells of itself without its lock.
class Findings {
public:
    explicit Findings(Session& session)
        : session_(session) {}

    void gather() {
        session_.lookOn();
        const auto start = Clock::now();
        const auto info = session_.device().getDevice()->getInfoMethod();
        const bool isTold = isAnswered({info});
        seconds_ = std::chrono::duration<double>(Clock::now() - start).count();
        if (isTold && info->returnCode() == 0)
            info_ = info->value();
        askForLock();
        for (const auto& object : session_.objects())
            askObject(*object);
        if (!(isLockKnown_ && holder_) || session_.device().isLocked())
            ask();
    }

    void show(PrometheusText& text) const {
        if (info_)
            showInfo(text, *info_);
        text.begin("tavo_exchange_seconds", "How long one exchange with the device took.");
        text.add(seconds_);
        if (isLockKnown_) {
            text.begin("tavo_lock_held", "Whether somebody holds the lock of the device.");
            text.add(holder_ ? 1 : 0);
            text.begin("tavo_lock_holder_info", "Who holds the lock of the device.");
            if (holder_)
                text.add(1, {{"user", *holder_}});
        }
        text.begin("tavo_relay_on", "Whether the relay is on. The device tells while nobody holds its lock.");
        addAnswers(text, relays_, "relay");
        text.begin("tavo_post_code", "The last POST code. The device tells while nobody holds its lock.");
        addAnswers(text, codes_, "object");
    }

private:
    void askForLock() {
        try {
            holder_ = session_.lockHolder();
            isLockKnown_ = true;
        } catch (const Error& refusal) {
            // A device need not tell.
            if (!refusal.facts().connectionUsable)
                throw;
        }
    }

    void askObject(const Object_v1_0& object) {
        namespace relay_v1_0 = CommonModules::TAVOXTranscode::relay_v1_0;
        namespace lpcPostCode_v1_0 = TAVOXTranscode::lpcPostCode_v1_0;
        if (dynamic_cast<const Relay_v1_0*>(&object) && object.hasMethod("get"))
            relays_.push_back(
                question(object, callOf(object, relay_v1_0::get), &dto::relay::GetReply::state));
        if (dynamic_cast<const LpcPostCode_v1_0*>(&object) && object.hasMethod("postCodeGet"))
            codes_.push_back(question(object, callOf(object, lpcPostCode_v1_0::postCodeGet),
                                      &dto::lpcPostCode::PostCodeGetReply::postCode));
    }

    void ask() {
        std::vector<std::shared_ptr<Method>> all;
        for (const auto* questions : {&relays_, &codes_})
            for (const auto& question : *questions)
                all.push_back(question.method);
        if (all.empty() || isAnswered(all))
            return;
        // One that the device refuses ends the batch.
        for (const auto& method : all)
            if (!method->isResultSet())
                isAnswered({method});
    }

    /// @return false for a refusal that leaves the connection usable.
    bool isAnswered(const std::vector<std::shared_ptr<Method>>& methods) {
        try {
            session_.run(methods);
            return true;
        } catch (const Error& refusal) {
            if (!refusal.facts().connectionUsable)
                throw;
            return false;
        }
    }

    static void addAnswers(PrometheusText& text, const std::vector<Question>& questions, const char* label) {
        for (const auto& question : questions)
            if (hasAnswer(question))
                text.add(question.value(), {{label, question.object}});
    }

    static void showInfo(PrometheusText& text, const dto::Device::InfoReply& info) {
        text.begin("tavo_device_info", "Name and version of the device.");
        text.add(1, {{"name", info.name}, {"version", Version(info.version).text}});
        text.begin("tavo_firmware_info", "Name and version of a part of the device's firmware.");
        for (const auto& part : info.firmware)
            text.add(1, {{"name", part.name}, {"version", Version(part.version).text}});
    }

    Session& session_;
    double seconds_ = 0;
    std::optional<dto::Device::InfoReply> info_;
    bool isLockKnown_ = false;
    std::optional<std::string> holder_;
    std::vector<Question> relays_;
    std::vector<Question> codes_;
};

/// What the device tells; empty if it does not, for which a reason is given.
std::optional<Findings> findingsOf(Session& session, std::string& why) {
    session.watchSignals();
    TotalLimit limit(session);
    try {
        std::optional<Findings> findings(session);
        findings->gather();
        return findings;
    } catch (const Interrupted&) {
        throw;
    } catch (const Failure& failure) {
        if (failure.code == ExitCode::usage)
            throw;
        why = failure.what();
    } catch (const std::exception& fault) {
        why = fault.what();
    }
    if (limit.isOver())
        why = fmt::format("the device took longer than {} seconds in all", TotalLimit::longest.count());
    return std::nullopt;
}

void showMetrics(Session& session, Output& output) {
    std::string why;
    const auto findings = findingsOf(session, why);
    PrometheusText text({{"device", session.address()}});
    text.begin("tavo_up", "Whether the device could be asked.");
    text.add(findings ? 1 : 0);
    if (findings)
        findings->show(text);
    else
        output.warn(fmt::format("{} counts as gone: {}", session.address(), why));
    output.show({{"metrics", text.document()}}, [&](TextWriter& writer) { writer.write(text.text()); });
}

} // namespace

std::vector<Command> metricsCommands() {
    return {command("metrics", "Print the state of the device for Prometheus, without taking the lock",
                    showMetrics)};
}

} // namespace TAVO::cli
