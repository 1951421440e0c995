#include <tavo/cli/follow.h>

#include <algorithm>
#include <chrono>

#include <tavo/cli/interrupt.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

void Pace::describe(OptionList& list, const std::vector<std::string>& needed) {
    list.add(
        "--timeout", timeout, "End after this time; default: never",
        {.kind = ValueKind::duration, .limits = between(0.0, 1e6), .valueName = "DURATION", .needs = needed});
    list.add("--interval", interval, "Time between two polls",
             {.showsDefault = true,
              .kind = ValueKind::duration,
              .limits = between(0.001, 1e6),
              .valueName = "DURATION",
              .needs = needed});
}

bool lookRepeatedly(const Pace& pace, const std::function<bool()>& look) {
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;
    const auto start = Clock::now();
    for (;;) {
        const auto passed = Seconds(Clock::now() - start);
        const bool last = pace.timeout && passed >= Seconds(*pace.timeout);
        if (look())
            return true;
        if (last)
            return false;
        auto pause = Seconds(pace.interval);
        if (pace.timeout)
            pause = std::clamp(Seconds(*pace.timeout) - Seconds(Clock::now() - start), Seconds(0), pause);
        InterruptWatch::pause(std::chrono::ceil<std::chrono::milliseconds>(pause));
    }
}

void Changes::show(const std::string& key, const nlohmann::json& state, const std::string& text) {
    const auto [known, isNew] = last_.try_emplace(key, state);
    if (!isNew && known->second == state)
        return;
    known->second = state;
    output_.showNext([&](JsonWriter& json) { json.write(state); },
                     [&](TextWriter& writer) { writer.print("{}\n", text); });
}

} // namespace TAVO::cli
