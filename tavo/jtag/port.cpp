#include <tavo/jtag/port.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

namespace TAVO::jtag {

namespace {

namespace calls = TAVOXTranscode::jtag_v1_0;

/// Of one exchange, in both directions together.
constexpr std::size_t mostBytes = std::size_t{4} * 1024 * 1024;
/// What a call takes besides its bits, roughly.
constexpr std::size_t bytesOfCall = 64;
constexpr std::chrono::microseconds longestSleep(1'000'000'000);
constexpr std::chrono::hours longestIdle(24);

} // namespace

/// Calls of one exchange, and what their replies are for.
class Port::Batch {
public:
    Batch(Port& port, std::vector<BitString>& results)
        : port_(port)
        , results_(results) {
        if (!port.isNeutral_)
            add(port.options_->neutralise());
    }

    bool isFull() const { return bytes_ >= mostBytes; }

    void take(const Step& step, std::size_t place) {
        std::visit([&](const auto& kind) { add(kind, place); }, step);
    }

    void execute() {
        if (methods_.empty())
            return;
        // Nobody knows, should this fail.
        port_.irEnd_.reset();
        port_.drEnd_.reset();
        port_.executor_.execute(methods_);
        auto polled = polled_.begin();
        for (std::size_t call = 0; call < methods_.size(); ++call) {
            const bool mayDiffer = polled != polled_.end() && polled->call == call;
            if (!mayDiffer || !hasCaptured(*methods_[call], (polled++)->bits))
                port_.executor_.insist(*methods_[call]);
        }
        port_.isNeutral_ = true;
        port_.irEnd_ = irEnd_;
        port_.drEnd_ = drEnd_;
        readReplies();
    }

private:
    struct PolledShift {
        /// Its place in `methods_`.
        std::size_t call;
        std::size_t bits;
    };

    /// A shift that was compared in vain has captured its bits, one that was refused has not.
    static bool hasCaptured(const Method& shift, std::size_t bits) {
        const auto outcome = shift.getResult();
        const auto* reply = dynamic_cast<const dto::Jtag::ShiftReply*>(outcome.reply.get());
        return reply != nullptr && reply->data.size() == BitString::bytesFor(bits);
    }

    struct ReadShift {
        std::size_t place;
        std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>> method;
        std::size_t bits;
    };

    void add(const Methods& methods) {
        bytes_ += methods.size() * bytesOfCall;
        methods_.insert(methods_.end(), methods.begin(), methods.end());
    }

    template <class Request, class Reply, class... Values>
    auto call(const TAVOXTranscode::Call<Request, Reply>& kind, Values&&... values) {
        // cppcheck-suppress redundantInitialization ; takes the call of make() for two assignments
        auto method = port_.object_->make(kind, std::forward<Values>(values)...);
        methods_.push_back(method);
        bytes_ += bytesOfCall;
        return method;
    }

    void add(const Shift& shift, std::size_t place) {
        const bool isIr = shift.target == Register::instruction;
        endIn(isIr ? shift.end : irEnd_.value_or(TapState::runTestIdle),
              isIr ? drEnd_.value_or(TapState::runTestIdle) : shift.end);
        if (shift.poll)
            add(port_.options_->poll(shift.target, *shift.poll));
        const auto method = call(isIr ? calls::shiftIR : calls::shiftDR,
                                 static_cast<std::int32_t>(shift.bits.size()), shift.bits.bytes());
        bytes_ += 2 * shift.bits.bytes().size();
        if (shift.poll) {
            polled_.push_back({methods_.size() - 1, shift.bits.size()});
            add(port_.options_->endPoll());
        }
        if (shift.isRead)
            shifts_.push_back({place, method, shift.bits.size()});
    }

    void endIn(TapState ir, TapState dr) {
        if (std::exchange(irEnd_, ir) != ir || std::exchange(drEnd_, dr) != dr)
            add(port_.options_->endIn(ir, dr));
        drEnd_ = dr;
    }

    void add(const Move& move, std::size_t) { call(calls::tapStateSet, static_cast<std::int32_t>(move.to)); }

    void add(const Idle& idle, std::size_t) {
        if (idle.duration > longestIdle)
            throw std::invalid_argument(
                fmt::format("a pause of {} microseconds is longer than a day", idle.duration.count()));
        auto left = idle.duration;
        do {
            const auto now = std::min(left, longestSleep);
            call(calls::sleep, static_cast<std::int32_t>(now.count()), idle.isClocked);
            left -= now;
        } while (left.count() > 0);
    }

    void add(const Trst& trst, std::size_t) {
        port_.drivesTrst_ = true;
        call(calls::ioTrstSet, trst.isDriven, trst.level);
    }

    void add(const PinClock& clock, std::size_t place) {
        lowerTck();
        if (std::exchange(port_.driven_->tms, clock.tms) != clock.tms)
            call(calls::ioTmsSet, true, clock.tms);
        if (std::exchange(port_.driven_->tdi, clock.tdi) != clock.tdi)
            call(calls::ioTdiSet, true, clock.tdi);
        if (clock.isRead)
            readTdo(place);
        call(calls::ioTckSet, true, true);
        port_.driven_->tck = true;
    }

    void add(const ReleasePins&, std::size_t) { add(port_.releasing()); }

    void add(const ReadTdo&, std::size_t place) {
        lowerTck();
        readTdo(place);
    }

    void lowerTck() {
        if (!port_.driven_)
            port_.driven_ = {true, {}, {}};
        port_.drivesClockPins_ = true;
        if (std::exchange(port_.driven_->tck, false))
            call(calls::ioTckSet, true, false);
    }

    void readTdo(std::size_t place) { pins_.emplace_back(place, call(calls::ioTdoGet)); }

    void readReplies() {
        for (auto& [place, shift, bits] : shifts_) {
            auto reply = shift->take();
            if (reply.data.size() != BitString::bytesFor(bits))
                throw std::runtime_error(fmt::format("{} captured {} bytes for {} bits", shift->getFullName(),
                                                     reply.data.size(), bits));
            results_[place] = BitString(bits, std::move(reply.data));
        }
        for (const auto& [place, pin] : pins_)
            results_[place] = BitString(1, pin->reply().level);
    }

    Port& port_;
    std::vector<BitString>& results_;
    Methods methods_;
    std::size_t bytes_ = 0;
    std::optional<TapState> irEnd_ = port_.irEnd_;
    std::optional<TapState> drEnd_ = port_.drEnd_;
    std::vector<ReadShift> shifts_;
    std::vector<PolledShift> polled_;
    std::vector<std::pair<std::size_t, std::shared_ptr<BoundMethod<dto::Header::oGetReply>>>> pins_;
};

Port::Port(std::shared_ptr<const Object_v1_0> object, Executor executor)
    : object_(std::move(object))
    , executor_(std::move(executor))
    , options_(shiftOptionsOf(*object_))
    , foundPins_{object_->make(calls::ioTrstGet), object_->make(calls::ioTckGet),
                 object_->make(calls::ioTmsGet), object_->make(calls::ioTdiGet)} {
    auto methods = options_->get();
    const auto frequency = options_->frequencyGet();
    methods.insert(methods.end(),
                   {foundPins_.trst, foundPins_.tck, foundPins_.tms, foundPins_.tdi, frequency});
    executor_.execute(methods);
    for (const auto& method : methods)
        executor_.insist(*method);
    foundFrequency_ = frequency_ = usable(*frequency);
}

std::int32_t Port::usable(const BoundMethod<dto::Base::FrequencyGetReply>& asked) {
    const auto frequency = asked.reply().frequency;
    if (frequency == 0 || frequency > std::numeric_limits<std::int32_t>::max())
        throw std::runtime_error(
            fmt::format("{} tells a frequency of {} Hz", asked.getFullName(), frequency));
    return static_cast<std::int32_t>(frequency);
}

TapState Port::state() {
    const auto asked = object_->make(calls::tapStateGet);
    executor_.execute({asked});
    executor_.insist(*asked);
    const auto state = asked->reply().state;
    if (state < 0 || static_cast<std::size_t>(state) >= HWDebug::tapStateCount)
        throw std::runtime_error(fmt::format("{} tells {}, which is no state", asked->getFullName(), state));
    return static_cast<TapState>(state);
}

std::int32_t Port::setFrequency(std::int32_t hertz) {
    const auto set = options_->frequencySet(hertz);
    const auto get = options_->frequencyGet();
    setsFrequency_ = true;
    executor_.execute({set, get});
    executor_.insist(*set);
    executor_.insist(*get);
    return frequency_ = usable(*get);
}

std::chrono::microseconds Port::timeOf(std::uint64_t clocks) const {
    constexpr std::uint64_t perSecond = 1'000'000;
    const auto hertz = std::uint64_t(frequency_);
    const auto seconds = clocks / hertz;
    if (seconds > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) / perSecond - 1)
        return std::chrono::microseconds::max();
    const auto rest = (clocks % hertz * perSecond + hertz - 1) / hertz;
    return std::chrono::microseconds(static_cast<std::int64_t>(seconds * perSecond + rest));
}

std::vector<BitString> Port::run(const Steps& steps) {
    std::vector<BitString> results(steps.size());
    std::size_t place = 0;
    do {
        Batch batch(*this, results);
        for (; place < steps.size() && !batch.isFull(); ++place)
            batch.take(steps[place], place);
        batch.execute();
    } while (place < steps.size());
    return results;
}

Methods Port::releasing() {
    Methods methods;
    if (!driven_)
        return methods;
    // A pin that is not driven is pulled up: TCK must not rise by being let go of.
    if (!driven_->tck)
        methods.push_back(object_->make(calls::ioTckSet, true, true));
    for (const auto& call : {calls::ioTckSet, calls::ioTmsSet, calls::ioTdiSet})
        methods.push_back(object_->make(call, false, true));
    driven_.reset();
    return methods;
}

void Port::restore(const Executor& executor) {
    if (std::exchange(isRestored_, true))
        return;
    auto methods = releasing();
    const auto giveBack = [&](const auto& call, const BoundMethod<dto::Header::IoGetReply>& asked) {
        methods.push_back(object_->make(call, asked.reply().first, asked.reply().second));
    };
    if (drivesTrst_)
        giveBack(calls::ioTrstSet, *foundPins_.trst);
    if (drivesClockPins_) {
        giveBack(calls::ioTckSet, *foundPins_.tck);
        giveBack(calls::ioTmsSet, *foundPins_.tms);
        giveBack(calls::ioTdiSet, *foundPins_.tdi);
    }
    const auto options = options_->restore();
    methods.insert(methods.end(), options.begin(), options.end());
    if (setsFrequency_)
        methods.push_back(options_->frequencySet(foundFrequency_));
    executor.execute(methods);
    for (const auto& method : methods)
        executor.insist(*method);
}

} // namespace TAVO::jtag
