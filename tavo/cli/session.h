#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/account.h>
#include <tavo/cli/failure.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/observed_transport.h>
#include <tavo/cli/return_code.h>
#include <tavo/cli/secret.h>
#include <tavo/cli/stream_transport.h>
#include <tavo/client.h>

namespace TAVO::simulator {
class Simulator;
}

namespace TAVO::cli {

class TraceFile;

/// Which device the user means, and as whom.
struct ConnectionOptions {
    std::string host;
    std::optional<std::uint16_t> port;
    std::optional<std::string> user;
    std::optional<std::string> passwordFile;
    /// The command through which the device is reached.
    std::optional<std::string> via;
    bool secure = false;
    /// Not secure, whatever the configuration file says.
    bool notSecure = false;
    /// Refuses a password file that others may read.
    bool strict = false;
    bool simulated = false;
    std::string topology = "standard";
    /// Go round a share that runs on this machine.
    bool direct = false;
    /// For how many seconds to wait for a lock that another user holds.
    std::optional<double> waitForLock;
    /// How many seconds an exchange may take; 0 is any time.
    std::optional<double> timeout;
    /// Whether the user stated it.
    bool timeoutIsChosen = false;
    /// Where to write what passes; empty for nowhere.
    std::shared_ptr<TraceFile> trace;
};

using Objects = std::vector<std::shared_ptr<Object_v1_0>>;

/// The types that the tool knows.
void registerObjects();

/// Adds an object and those below it.
void collect(const std::shared_ptr<Container>& node, Objects& objects);

/// One device for the time of one command. It is opened when it is first needed and released at the end.
class Session {
public:
    /// Takes the password of the environment, which nothing else sees from then on.
    /// @param warn is told what the user should know.
    Session(ConnectionOptions options, std::function<void(std::string_view)> warn);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    /// Unlocks the device, if that takes no longer than a moment, and closes the connection.
    ~Session();

    /// The device with its lock taken and its tree built.
    Device& device();
    /// Opens the device without its lock; of its objects only "device" is there.
    /// @return whether its key is known; otherwise the descriptor has no flags.
    /// @throws TAVOKeyError for an unknown key if a known one is required.
    bool identify(Device_Factory_Structs::TavoDeviceDescriptor& descriptor);

    /// Opens the device with all of its tree, but goes round a share and leaves the lock alone: while
    /// somebody else holds it, the device refuses what needs it. Does nothing if the device is open.
    /// @throws TAVOKeyError for an unknown key if a known one is required.
    void lookOn();

    /// Who holds the lock; empty for nobody. Takes it no more than identify() does.
    std::optional<std::string> lockHolder();

    /// The three fixed objects, then the root members with theirs below them.
    Objects objects();
    /// The same, also after findOnly() has built only some of them. Keep no object from before.
    Objects allObjects();
    /// @throws Failure (not found) that lists the objects that there are.
    std::shared_ptr<Object_v1_0> find(const std::string& fullName);
    /// The same for a command that needs no other object: of the tree only the way to this one is built.
    std::shared_ptr<Object_v1_0> findOnly(const std::string& fullName);

    /// Executes the calls in one exchange. Results that arrived before a failure stay in their Methods.
    /// @throws Interrupted when a signal came; what Device::multicall throws.
    void run(const std::vector<std::shared_ptr<Method>>& methods);
    /// The same, and insists on the success of every call.
    void runAll(const std::vector<std::shared_ptr<Method>>& methods);
    /// Executes one call and insists on its success.
    void execute(const std::shared_ptr<Method>& method);
    /// The same for a call of `object` without a reply, see Object_v1_0::make.
    template <class Request, class... Arguments>
    void execute(const Object_v1_0& object, const TAVOXTranscode::Call<Request>& call,
                 Arguments&&... arguments) {
        execute(object.make(call, std::forward<Arguments>(arguments)...));
    }
    /// The same for a call that gives something back to the device: also after a signal.
    void release(const std::shared_ptr<Method>& method);
    /// The same for several, in one exchange.
    void releaseAll(const std::vector<std::shared_ptr<Method>>& methods);
    /// Executes one call, insists on its success and takes its result.
    template <class Result>
    Result value(const std::shared_ptr<BoundMethod<Result>>& method) {
        execute(method);
        return method->take();
    }
    /// The same for a call of `object`: its reply, or a `Result` that is made of it.
    template <class Result = void, class Request, class Reply, class... Arguments>
    auto value(const Object_v1_0& object, const TAVOXTranscode::Call<Request, Reply>& call,
               Arguments&&... arguments) {
        return value(object.make<Result>(call, std::forward<Arguments>(arguments)...));
    }

    /// What the device is called towards the user: "host:port".
    std::string address() const;

    /// @throws Failure (usage) without a user or a password.
    Account account() const;
    /// Where a share for this device and user would be found; empty where there cannot be one.
    std::string sharePath() const;
    /// Opens a device that the session does not keep, with its lock, of its tree the fixed objects alone.
    /// Another thread may call this, and interrupt it.
    std::shared_ptr<Device> openApart(const Account& account);
    /// Ends the opening that waits.
    void interruptOpening();
    /// From now on, signals interrupt what waits for the device.
    void watchSignals() { watch(); }
    /// The limit of each exchange, as the user gave it.
    const TimeLimit& timeLimit() const { return timeLimit_; }

private:
    /// The connection to a share; null where there is none.
    std::unique_ptr<Transport> connectToShare();
    std::unique_ptr<Transport> connectToDevice();
    /// The one or the other, observed.
    std::unique_ptr<Transport> connect();
    /// Runs an action that waits for the device, and says what a time limit means that ends it.
    template <class Action>
    auto await(Action action);
    std::string lateText() const;
    /// @param only the objects to build, all when empty.
    OpenOptions openOptions(std::vector<std::string> only);
    std::shared_ptr<Device> build(const Account& account, const std::vector<std::string>& only);
    std::shared_ptr<Device> buildWhenUnlocked(const Account& account, const std::vector<std::string>& only);
    void startSimulator();
    int port() const;
    void exchange(const std::vector<std::shared_ptr<Method>>& methods);
    /// @param only the objects to build, all when empty.
    void open(std::vector<std::string> only);
    /// The device without its lock, whatever its key.
    std::shared_ptr<Device> unrecognised();
    /// Of its objects only "device" is there.
    void prepare(const std::shared_ptr<Device>& device);
    OpenOptions interruptible();
    InterruptWatch& watch();
    /// What gives something back to the device is done after a signal too, but not for long.
    void limitRelease();

    ConnectionOptions options_;
    std::function<void(std::string_view)> warn_;
    std::optional<Secret> environmentPassword_;
    std::unique_ptr<simulator::Simulator> simulator_;
    std::shared_ptr<StreamTransport::Stop> stop_ = std::make_shared<StreamTransport::Stop>();
    bool usesShare_ = false;
    TimeLimit timeLimit_;
    /// That of the last exchange, which may have had longer.
    TimeLimit exchangeLimit_;
    std::optional<InterruptWatch> watch_;
    std::shared_ptr<Answers> answers_ = std::make_shared<Answers>();
    std::shared_ptr<Device> device_;
    /// Whether only some of the objects were built.
    bool isPartial_ = false;
};

} // namespace TAVO::cli
