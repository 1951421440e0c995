#include <algorithm>
#include <cstdint>
#include <string>

#include <tavo/jtag/svf/player.h>
#include <tests/fuzz/fuzz_input.h>

// SVF files. Input: the file. It becomes batches that end where the stop rule says and keep to their sizes,
// the same as measuring tells, or a failure that names a line of the file.

namespace {

using fuzz::require;
using namespace TAVO::jtag;

constexpr std::int32_t hertz = 1'000'000;

void checkStep(const svf::Batch& batch, std::size_t place) {
    if (const auto* shift = std::get_if<Shift>(&batch.steps[place])) {
        require(shift->bits.size() > 0, "a scan has bits");
        require(TAVO::HWDebug::isResting(shift->end), "a scan ends in a resting state");
        const bool isChecked = std::any_of(batch.checks.begin(), batch.checks.end(),
                                           [&](const svf::Check& check) { return check.step == place; });
        require(shift->isRead == isChecked, "what is read is checked");
    } else if (const auto* move = std::get_if<Move>(&batch.steps[place])) {
        require(TAVO::HWDebug::isResting(move->to), "a move ends in a resting state");
    }
}

void checkBatch(const svf::Batch& batch, svf::StopAt stopAt) {
    require(batch.waits <= svf::Planner::longestWait, "no batch waits for long");
    require(batch.firstLine > 0 && batch.firstLine <= batch.lastLine, "a batch has lines");
    require(!batch.frequency || batch.steps.empty(), "a frequency stands alone");
    require(stopAt != svf::StopAt::batch || batch.checks.size() <= svf::Planner::checksPerBatch,
            "a batch has a hundred checked scans");
    // Looking for the check of each step is for small batches.
    for (std::size_t place = 0; place < std::min<std::size_t>(batch.steps.size(), 100); ++place)
        checkStep(batch, place);
    if (stopAt == svf::StopAt::check && !batch.checks.empty())
        for (auto place = batch.checks.front().step; place < batch.steps.size(); ++place) {
            const auto* shift = std::get_if<Shift>(&batch.steps[place]);
            require(shift != nullptr && shift->isRead, "nothing but checked scans follows one");
        }
}

void checkPlan(std::string_view text, svf::StopAt stopAt, const svf::Totals& measured) {
    svf::Parser parser(text, "file");
    std::int32_t frequency = hertz;
    svf::Planner planner(parser, {.stopAt = stopAt}, [&](std::uint64_t clocks) {
        const auto perSecond = static_cast<std::uint64_t>(frequency);
        return std::chrono::microseconds((clocks * 1'000'000 + perSecond - 1) / perSecond);
    });
    svf::Totals totals;
    while (const auto batch = planner.next()) {
        checkBatch(*batch, stopAt);
        totals.add(*batch);
        if (batch->frequency)
            frequency = batch->frequency->hertz.value_or(hertz);
    }
    require(totals == measured, "playing does what measuring told");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    const std::string text(bytes, bytes + length);
    try {
        const auto measured = svf::measure(text, "file", {}, hertz);
        // What takes an appliance hours to do takes a plan long too.
        if (measured.bits > 10'000'000 || measured.waits > std::chrono::hours(1))
            return 0;
        for (const auto stopAt : {svf::StopAt::check, svf::StopAt::batch, svf::StopAt::end})
            checkPlan(text, stopAt, measured);
    } catch (const svf::SvfError& error) {
        const std::string what = error.what();
        require(what.starts_with("file:"), "a failure names its file");
        const auto line = std::stoull(what.substr(5));
        const auto ends =
            std::count_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; });
        require(line >= 1 && line <= 1 + static_cast<std::uint64_t>(ends),
                "a failure names a line of the file");
    }
    return 0;
}
