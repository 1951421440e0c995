#include <tavo/cli/commands/jtag.h>

#include <chrono>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

#include <fmt/format.h>

#include <tavo/cli/borrowed_port.h>
#include <tavo/cli/door/device_guard.h>
#include <tavo/cli/door/door.h>
#include <tavo/cli/door/told_place.h>
#include <tavo/cli/jtag_serve/clock_dump.h>
#include <tavo/cli/jtag_serve/remote_bitbang.h>
#include <tavo/cli/jtag_serve/xvc.h>

namespace TAVO::cli {

namespace {

using jtag::Steps;

/// A client of remote_bitbang stops working when it cannot send, however long the device is busy; and it may
/// close the connection long before that has clocked all.
constexpr Visitor::Bounds bounds{
    .received = std::size_t{64} << 20, .unsent = std::size_t{1} << 20, .finishing = std::chrono::minutes(5)};

std::size_t levelsOf(const jtag::Step& step) {
    if (const auto* shift = std::get_if<jtag::Shift>(&step))
        return shift->isRead ? shift->bits.size() : 0;
    if (const auto* clock = std::get_if<jtag::PinClock>(&step))
        return clock->isRead ? 1 : 0;
    return std::holds_alternative<jtag::ReadTdo>(step) ? 1 : 0;
}

/// What a port tells to which nothing is connected.
std::vector<jtag::BitString> neutralResults(const Steps& steps) {
    std::vector<jtag::BitString> results;
    for (const auto& step : steps)
        results.emplace_back(levelsOf(step), true);
    return results;
}

/// The port of a device, as far as it works.
class GuardedPort {
public:
    GuardedPort(jtag::Port& port, Output& output)
        : port_(port)
        , output_(output)
        , guard_([&output](const std::exception& failure) {
            output.warn(fmt::format("the device fails, TDO is high from now on: {}", failure.what()));
        }) {}

    JtagAccess access() {
        return {[this](const Steps& steps) { return run(steps); },
                [this](std::int32_t hertz) { return setFrequency(hertz); },
                [this](std::uint64_t clocks) { return port_.timeOf(clocks); },
                [this](const std::string& warning) { output_.warn(warning); }};
    }

    jtag::TapState state() {
        auto state = jtag::TapState::testLogicReset;
        guard_.attempt([&] { state = port_.state(); });
        return state;
    }
    void throwIfFailed() const { guard_.throwIfFailed(); }

private:
    std::vector<jtag::BitString> run(const Steps& steps) {
        std::vector<jtag::BitString> results;
        if (guard_.attempt([&] { results = port_.run(steps); }))
            return results;
        return neutralResults(steps);
    }

    std::int32_t setFrequency(std::int32_t hertz) {
        guard_.attempt([&] {
            try {
                port_.setFrequency(hertz);
            } catch (const Failure& refused) {
                if (!refused.returned)
                    throw;
                output_.warn(fmt::format("TCK stays at {} Hz: {}", port_.frequency(), refused.what()));
            }
        });
        return port_.frequency();
    }

    jtag::Port& port_;
    Output& output_;
    DeviceGuard guard_;
};

void serveClients(GuardedPort& port, Door& door, ClockDump* dump, const JtagServeOptions& options) {
    auto access = port.access();
    if (dump) {
        access.clocked = [dump](bool tms, bool tdi, bool tdo) { dump->clock(tms, tdi, tdo); };
        access.trstSet = [dump](bool level) { dump->setTrst(level); };
    }
    const auto greet = [&](Conversation::Send send) -> std::unique_ptr<Conversation> {
        if (options.xvc.empty())
            return std::make_unique<RemoteBitbang>(port.state(), access, std::move(send));
        return std::make_unique<Xvc>(port.state(), access, std::move(send));
    };
    do {
        door.serve(greet);
        if (dump)
            dump->flush();
        port.throwIfFailed();
    } while (!options.once);
}

} // namespace

void JtagServeOptions::describe(OptionList& list) {
    list.add("--bitbang", bitbang, "Listen for a client of OpenOCD's remote_bitbang; port 0 takes a free one",
             {.valueName = "[ADDRESS:]PORT"});
    list.add("--xvc", xvc, "Listen for a client of Xilinx Virtual Cable 1.0; port 0 takes a free one",
             {.valueName = "[ADDRESS:]PORT"});
    list.add("--vcd", vcd, "Write what the clients clock to this file, as a value change dump",
             {.kind = ValueKind::file});
    list.add("--once", once, "End when the first client has gone");
}

void serveJtag(Session& session, Output& output, const JtagServeOptions& options) {
    if (options.bitbang.empty() == options.xvc.empty())
        throw Failure(ExitCode::usage, "either --bitbang or --xvc is needed, and not both");
    const auto address = parseListenAddress(options.bitbang + options.xvc);
    const auto object = chooseJtag(session, options);
    std::optional<ClockDump> dump;
    if (!options.vcd.empty())
        dump.emplace(options.vcd, object->getFullName());
    Door door(address, bounds);
    BorrowedPort borrowed(session, output, object);
    borrowed.use([&](jtag::Port& port) {
        GuardedPort guarded(port, output);
        try {
            tellIfAnybodyReads(output, door.place());
            serveClients(guarded, door, dump ? &*dump : nullptr, options);
        } catch (const Interrupted&) {
            InterruptWatch::forget();
        }
        if (dump)
            dump->flush();
        guarded.throwIfFailed();
    });
}

} // namespace TAVO::cli
