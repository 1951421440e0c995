#pragma once

#include <chrono>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include <tavo/client.h>
#include <tavo/jtag/port.h>

namespace TAVO::toolkit {

using jtag::Methods;

/// How a program's device is reached, and how the program stops what takes long.
class Access {
public:
    Access() = default;
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;
    virtual ~Access() = default;

    /// Executes calls in one exchange. A call that the device refuses is no failure.
    virtual void run(const Methods& calls) = 0;
    /// The same for calls that give something back to the device: also when the program is to stop.
    virtual void runLast(const Methods& calls) = 0;
    /// Throws if the device refused the executed call.
    virtual void insist(const Method& executed) = 0;
    /// Whether insist() throws such exceptions.
    virtual bool isRefusal(const std::exception& failure) const = 0;
    /// Throws if the program is to stop. What takes long asks between its exchanges.
    virtual void throwIfStopped() = 0;
    /// Waits. Throws as throwIfStopped(), at once when the program is to stop.
    virtual void pause(std::chrono::milliseconds time) = 0;

    /// Executes calls in one exchange and insists on the success of each.
    void runAll(const Methods& calls);
    void releaseAll(const Methods& calls);
    /// Executes one call and insists on its success.
    template <class Request, class... Arguments>
    void execute(const Object_v1_0& object, const TAVOXTranscode::Call<Request>& call,
                 Arguments&&... arguments) {
        runAll({object.make(call, std::forward<Arguments>(arguments)...)});
    }
    /// The same for a call with a reply.
    template <class Request, class Reply, class... Arguments>
    Reply value(const Object_v1_0& object, const TAVOXTranscode::Call<Request, Reply>& call,
                Arguments&&... arguments) {
        // cppcheck-suppress redundantAssignment ; takes the call of make() for two assignments
        const auto method = object.make(call, std::forward<Arguments>(arguments)...);
        runAll({method});
        return method->take();
    }

    /// The two ways to execute calls, for a jtag::Port. They refer to this.
    jtag::Executor executor();
    jtag::Executor lastExecutor();

private:
    void insistOnAll(const Methods& executed);
};

} // namespace TAVO::toolkit
