#include <tavo/jtag/shift_options.h>

#include <stdexcept>
#include <string>

namespace TAVO::jtag {

namespace {

namespace v1_0 = TAVOXTranscode::jtag_v1_0;
namespace v1_1 = TAVOXTranscode::jtag_v1_1;
using namespace dto::Jtag;
using Bytes = std::vector<std::uint8_t>;

std::int32_t numberOf(TapState state) { return static_cast<std::int32_t>(state); }

/// One option that can be asked for and set.
template <class Reply, class Request>
class Option {
public:
    Option(const Object_v1_0& object, const TAVOXTranscode::Call<TAVOXTranscode::None, Reply>& get,
           const TAVOXTranscode::Call<Request>& set)
        : object_(object)
        , set_(set) {
        if (object.hasMethod(std::string(get.name)) && object.hasMethod(std::string(set.name)))
            get_ = object.make(get);
    }

    void ask(Methods& methods) const {
        if (get_)
            methods.push_back(get_);
    }
    const Reply& found() const { return get_->reply(); }
    bool isOffered() const { return get_ != nullptr; }
    template <class... Values>
    void set(Methods& methods, Values&&... values) const {
        if (get_)
            methods.push_back(object_.make(set_, std::forward<Values>(values)...));
    }

private:
    const Object_v1_0& object_;
    const TAVOXTranscode::Call<Request>& set_;
    std::shared_ptr<BoundMethod<Reply>> get_;
};

class OptionsOfVersion1_0 : public ShiftOptions {
public:
    explicit OptionsOfVersion1_0(const Object_v1_0& object)
        : object_(object)
        , expected_(object, v1_0::tdoExpectedGet, v1_0::tdoExpectedSet)
        , retry_(object, v1_0::retryGet, v1_0::retrySet)
        , repeat_(object, v1_0::repeatGet, v1_0::repeatSet)
        , irEnd_(object, v1_0::terminationStateIRGet, v1_0::terminationStateIRSet)
        , drEnd_(object, v1_0::terminationStateDRGet, v1_0::terminationStateDRSet) {}

    Methods get() override {
        Methods methods;
        expected_.ask(methods);
        retry_.ask(methods);
        repeat_.ask(methods);
        irEnd_.ask(methods);
        drEnd_.ask(methods);
        return methods;
    }

    Methods neutralise() const override {
        auto methods = endPoll();
        repeat_.set(methods, 0, false);
        return methods;
    }

    Methods restore() const override {
        Methods methods;
        if (expected_.isOffered())
            expected_.set(methods, expected_.found().bits, expected_.found().expected,
                          expected_.found().mask);
        if (retry_.isOffered())
            retry_.set(methods, retry_.found().count, std::int32_t{retry_.found().enable});
        if (repeat_.isOffered())
            repeat_.set(methods, repeat_.found().count, repeat_.found().enable);
        if (irEnd_.isOffered())
            irEnd_.set(methods, irEnd_.found().state);
        if (drEnd_.isOffered())
            drEnd_.set(methods, drEnd_.found().state);
        return methods;
    }

    Methods endIn(TapState ir, TapState dr) const override {
        Methods methods;
        irEnd_.set(methods, numberOf(ir));
        drEnd_.set(methods, numberOf(dr));
        return methods;
    }

    Methods poll(Register, const Poll& poll) const override {
        Methods methods;
        expected_.set(methods, static_cast<std::int32_t>(poll.expected.size()), poll.expected.bytes(),
                      poll.mask.bytes());
        retry_.set(methods, poll.retries, 1);
        return methods;
    }

    Methods endPoll() const override {
        Methods methods;
        expected_.set(methods, 0, Bytes(), Bytes());
        retry_.set(methods, 0, 0);
        return methods;
    }

    std::shared_ptr<BoundMethod<dto::Base::FrequencyGetReply>> frequencyGet() const override {
        return object_.make(v1_0::tckFrequencyGet);
    }
    std::shared_ptr<Method> frequencySet(std::int32_t hertz) const override {
        return object_.make(v1_0::tckFrequencySet, hertz);
    }

private:
    const Object_v1_0& object_;
    Option<TdoExpectedGetReply, TdoExpectedSetRequest> expected_;
    Option<RetryGetReply, RetrySetRequest> retry_;
    Option<RepeatGetReply, RepeatSetRequest> repeat_;
    Option<TerminationStateGetReply, TerminationStateSetRequest> irEnd_;
    Option<TerminationStateGetReply, TerminationStateSetRequest> drEnd_;
};

class OptionsOfVersion1_1 : public ShiftOptions {
public:
    explicit OptionsOfVersion1_1(const Object_v1_0& object)
        : object_(object)
        , expected_(object, v1_1::optionTdoExpectedGet, v1_1::optionTdoExpectedSet)
        , retry_(object, v1_1::optionRetryGet, v1_1::optionRetrySet)
        , repeat_(object, v1_1::optionRepeatGet, v1_1::optionRepeatSet)
        , clocks_(object, v1_1::optionPrePostTckGet, v1_1::optionPrePostTckSet)
        , end_(object, v1_1::optionTerminationStateGet, v1_1::optionTerminationStateSet) {}

    Methods get() override {
        Methods methods;
        expected_.ask(methods);
        retry_.ask(methods);
        repeat_.ask(methods);
        clocks_.ask(methods);
        end_.ask(methods);
        return methods;
    }

    Methods neutralise() const override {
        auto methods = endPoll();
        repeat_.set(methods, 0, false, 0, false);
        clocks_.set(methods, 0, 0, 0, 0);
        return methods;
    }

    Methods restore() const override {
        Methods methods;
        if (expected_.isOffered()) {
            const auto& found = expected_.found();
            expected_.set(methods, found.irBits, found.irExpected, found.irMask, found.drBits,
                          found.drExpected, found.drMask);
        }
        if (retry_.isOffered()) {
            const auto& found = retry_.found();
            retry_.set(methods, found.irCount, found.irEnable, found.drCount, found.drEnable);
        }
        if (repeat_.isOffered()) {
            const auto& found = repeat_.found();
            repeat_.set(methods, found.irCount, found.irEnable, found.drCount, found.drEnable);
        }
        if (clocks_.isOffered()) {
            const auto& found = clocks_.found();
            clocks_.set(methods, found.value1, found.value2, found.value3, found.value4);
        }
        if (end_.isOffered())
            end_.set(methods, end_.found().irState, end_.found().drState);
        return methods;
    }

    Methods endIn(TapState ir, TapState dr) const override {
        Methods methods;
        end_.set(methods, numberOf(ir), numberOf(dr));
        return methods;
    }

    Methods poll(Register target, const Poll& poll) const override {
        const auto bits = static_cast<std::int32_t>(poll.expected.size());
        Methods methods;
        if (target == Register::instruction) {
            expected_.set(methods, bits, poll.expected.bytes(), poll.mask.bytes(), 0, Bytes(), Bytes());
            retry_.set(methods, poll.retries, true, 0, false);
        } else {
            expected_.set(methods, 0, Bytes(), Bytes(), bits, poll.expected.bytes(), poll.mask.bytes());
            retry_.set(methods, 0, false, poll.retries, true);
        }
        return methods;
    }

    Methods endPoll() const override {
        Methods methods;
        expected_.set(methods, 0, Bytes(), Bytes(), 0, Bytes(), Bytes());
        retry_.set(methods, 0, false, 0, false);
        return methods;
    }

    std::shared_ptr<BoundMethod<dto::Base::FrequencyGetReply>> frequencyGet() const override {
        return object_.make(v1_1::optionTckFrequencyGet);
    }
    std::shared_ptr<Method> frequencySet(std::int32_t hertz) const override {
        return object_.make(v1_1::optionTckFrequencySet, hertz);
    }

private:
    const Object_v1_0& object_;
    Option<OptionTdoExpectedGetReply, OptionTdoExpectedSetRequest> expected_;
    Option<OptionRetryGetReply, OptionRetrySetRequest> retry_;
    Option<OptionRepeatGetReply, OptionRepeatSetRequest> repeat_;
    Option<OptionPrePostTckGetReply, OptionPrePostTckSetRequest> clocks_;
    Option<OptionTerminationStateGetReply, OptionTerminationStateSetRequest> end_;
};

} // namespace

std::unique_ptr<ShiftOptions> shiftOptionsOf(const Object_v1_0& object) {
    if (dynamic_cast<const HWDebug::Jtag_v1_0*>(&object) != nullptr)
        return std::make_unique<OptionsOfVersion1_0>(object);
    if (dynamic_cast<const HWDebug::Jtag_v1_1*>(&object) != nullptr)
        return std::make_unique<OptionsOfVersion1_1>(object);
    throw std::invalid_argument(object.getFullName() + " is no jtag object");
}

} // namespace TAVO::jtag
