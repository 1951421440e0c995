#include <tavo/jtag/svf/player.h>

#include <utility>

#include <fmt/format.h>

namespace TAVO::jtag::svf {

void Totals::add(const Batch& batch) {
    statements += batch.statements;
    scans += batch.scans;
    checkedScans += batch.checks.size();
    bits += batch.bits;
    waits += batch.waits;
}

Totals measure(std::string_view text, const std::string& file, PlanOptions options, std::int32_t hertz) {
    options.isMeasured = true;
    auto frequency = hertz;
    Parser parser(text, file);
    Planner planner(parser, std::move(options), [&frequency](std::uint64_t clocks) {
        const auto perSecond = static_cast<std::uint64_t>(frequency);
        return std::chrono::microseconds((clocks * 1'000'000 + perSecond - 1) / perSecond);
    });
    Totals totals;
    while (const auto batch = planner.next()) {
        totals.add(*batch);
        if (batch->frequency)
            frequency = batch->frequency->hertz.value_or(hertz);
    }
    return totals;
}

Player::Player(std::string_view text, std::string file, PlanOptions options, Port& port, Hooks hooks)
    : file_(std::move(file))
    , port_(port)
    , hooks_(std::move(hooks))
    , parser_(text, file_)
    , asked_(port.frequency())
    , planner_(parser_, std::move(options), [&port](std::uint64_t clocks) { return port.timeOf(clocks); }) {}

void Player::play() {
    while (const auto batch = planner_.next()) {
        firstLine_ = batch->firstLine;
        lastLine_ = batch->lastLine;
        play(*batch);
        totals_.add(*batch);
        hooks_.showProgress(parser_.position());
    }
}

void Player::play(const Batch& batch) {
    if (batch.frequency)
        return setFrequency(batch);
    if (batch.steps.empty())
        return;
    const auto captured = port_.run(batch.steps);
    ++batches_;
    for (const auto& check : batch.checks)
        insistOn(check, captured[check.step], file_);
}

void Player::setFrequency(const Batch& batch) {
    const auto asked = batch.frequency->hertz.value_or(port_.foundFrequency());
    if (std::exchange(asked_, asked) == asked)
        return;
    const auto set = hooks_.setFrequency ? hooks_.setFrequency(asked) : port_.setFrequency(asked);
    if (set != asked)
        otherFrequencies_.push_back({batch.firstLine, asked, set});
}

std::string Player::place() const {
    return firstLine_ == lastLine_ ? fmt::format("{}:{}", file_, firstLine_)
                                   : fmt::format("{}:{}-{}", file_, firstLine_, lastLine_);
}

} // namespace TAVO::jtag::svf
