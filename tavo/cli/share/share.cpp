#include <tavo/cli/share/share.h>

#include <csignal>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/interrupt.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/wire/error.h>

namespace TAVO::cli {

namespace {

constexpr server::ClientBounds bounds{.connections = 1000, .heldBytes = std::size_t{512} << 20};
bool isIgnored(int signal) {
    struct sigaction action {};
    ::sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

constexpr std::uint32_t locked = 1001;
constexpr std::uint32_t tooLarge = 1005;

} // namespace

Share::Share(const ShareSettings& settings, const Account& account, DeviceLine::Access access, Tell tell)
    : settings_(settings)
    , account_(account)
    , tell_(std::move(tell))
    , log_(settings.logPath)
    , clients_(bounds)
    , line_(context_, std::move(access), *this)
    , retry_(context_)
    , idle_(context_)
    , watch_(context_)
    , signals_(context_)
    , file_(settings.socketPath.empty() ? nullptr
                                        : std::make_unique<share_socket::File>(context_, settings.socketPath))
    , listener_(
          server::listenOn(context_, settings.listenHost, settings.listenPort),
          [this](server::Socket socket) { enter(std::move(socket)); },
          [this] { return clients_.closeIdlest(); }) {
    if (file_)
        localListener_ = std::make_unique<LocalListener>(
            std::move(file_->acceptor()), [this](server::Socket socket) { enter(std::move(socket)); },
            [this] { return clients_.closeIdlest(); });
}

Share::~Share() { line_.stop(); }

void Share::run() {
    line_.open();
    context_.run();
    if (openingFailure_)
        std::rethrow_exception(openingFailure_);
}

void Share::awaitSignal() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        if (!isIgnored(signal))
            signals_.add(signal);
    signals_.async_wait([this](const asio::error_code& cancelled, int signal) {
        if (!cancelled)
            end(signal);
    });
}

void Share::end(int signal) {
    log_.event("end", {{"signal", signal}});
    tell_("ending");
    isEnding_ = true;
    // A second signal ends the program at once.
    signals_.clear();
    listener_.stop();
    if (localListener_)
        localListener_->stop();
    retry_.cancel();
    idle_.cancel();
    line_.hurry();
    if (served_)
        served_->closeAfterReply(false);
    clients_.closeAllBut(served_);
    stopWhenDone();
}

void Share::stopWhenDone() {
    if (isEnding_ && !line_.isExecuting() && clients_.count() == 0)
        context_.stop();
}

// Nothing is read from a client while it is served, so its end would not be noticed.
void Share::watchServed() {
    constexpr std::chrono::seconds pause(1);
    watch_.expires_after(pause);
    watch_.async_wait([this](const asio::error_code& cancelled) {
        if (cancelled)
            return;
        if (served_ && served_->hasEndedSending())
            line_.hurry();
        watchServed();
    });
}

void Share::enter(server::Socket socket) {
    if (!clients_.makeRoom())
        return;
    idle_.cancel();
    const auto client = std::make_shared<ShareClient>(static_cast<ShareClient::Owner&>(*this),
                                                      std::move(socket), ++connections_);
    clients_.add(client->number(), client);
    log_.event("connected", {{"client", client->number()}, {"peer", client->peer()}});
    client->start();
}

void Share::left(ShareClient& client) {
    if (const auto turn = client.turn()) {
        turn->dropTarget();
        logRequest(client, *turn, false);
    }
    if (served_ == &client) {
        served_ = nullptr;
        line_.hold(false);
        line_.hurry();
    }
    clients_.remove(client.number());
    log_.event("disconnected", {{"client", client.number()}});
    awaitIdleness();
    stopWhenDone();
}

void Share::serve(ShareClient& client, Plan::Bytes request) {
    const auto turn =
        std::make_shared<Turn>(std::move(request), FrontDesk{account_, grants_, descriptions_}, client);
    if (turn->needsDevice()) {
        client.setTurn(turn);
        return queue(client);
    }
    logRequest(client, *turn, true);
    turn->answerAlone();
}

void Share::refuse(ShareClient& client) {
    client.closeAfterReply(true);
    Plan::Bytes reply;
    server::appendReplyHead(reply, server::ErrorFrame{0, tooLarge, "The request is too large"}, 0);
    client.append(reply);
    client.finish();
}

void Share::queue(ShareClient& client) {
    if (line_.isAway() || isEnding_)
        return client.close();
    waiting_.push_back(client.weak_from_this());
    if (line_.isReleased())
        return line_.open();
    nextTurn();
}

void Share::nextTurn() {
    while (line_.isReady() && !waiting_.empty()) {
        const auto client = waiting_.front().lock();
        waiting_.pop_front();
        if (!client || !client->turn())
            continue;
        served_ = client.get();
        line_.execute(client->turn());
    }
}

void Share::holdReply(ShareClient& client, bool held) {
    if (served_ == &client)
        line_.hold(held);
}

void Share::turnAnswered(const Turn& turn) {
    if (const auto* client = std::exchange(served_, nullptr))
        logRequest(*client, turn, true);
}

void Share::turnEnded(Turn& turn) {
    if (turn.staleDescriptions() || turn.plan().bringsChange())
        descriptions_.forget();
    awaitIdleness();
    stopWhenDone();
    nextTurn();
}

void Share::lineReleased() {
    descriptions_.forget();
    log_.event("released");
    if (!waiting_.empty())
        line_.open();
}

void Share::lineOpened(const DeviceLine::Methods& ofDevice, const DeviceLine::Methods& ofSystem) {
    descriptions_.setFixedMethods(DeviceFactory::DeviceInstanceID, "device", ofDevice);
    descriptions_.setFixedMethods(DeviceFactory::SystemInstanceID, "system", ofSystem);
    descriptions_.forget();
    failures_ = 0;
    log_.event("opened");
    if (!std::exchange(wasOpened_, true)) {
        awaitSignal();
        watchServed();
        auto told = fmt::format("listening on {}:{}", settings_.listenHost, listener_.endpoint().port());
        if (file_)
            told += fmt::format("\nsocket {}", file_->path());
        tell_(told);
        if (const int signal = InterruptWatch::takeSignal(); signal != 0)
            return end(signal);
    }
    awaitIdleness();
    nextTurn();
}

void Share::lineLost(const std::exception& exception) {
    if (!wasOpened_) {
        openingFailure_ = std::current_exception();
        return context_.stop();
    }
    log_.event("lost", {{"reason", exception.what()}});
    tell_(fmt::format("the device is lost: {}", exception.what()));
    descriptions_.forget();
    served_ = nullptr;
    refuseWaiting(exception);
    stopWhenDone();
    if (!line_.isReleased() && !isEnding_)
        retryLater();
}

void Share::refuseWaiting(const std::exception& exception) {
    const auto* lock = dynamic_cast<const LockError*>(&exception);
    for (const auto& waiting : std::exchange(waiting_, {}))
        if (const auto client = waiting.lock(); client && client->turn()) {
            if (const auto turn = client->turn(); lock)
                turn->refuse(locked, lock->lockingUser());
            else
                client->close();
        }
}

void Share::retryLater() {
    retry_.expires_after(DeviceLine::pauseAfter(failures_++));
    retry_.async_wait([this](const asio::error_code& cancelled) {
        if (!cancelled)
            line_.open();
    });
}

void Share::awaitIdleness() {
    if (!settings_.idle || clients_.count() > 0 || isEnding_ || line_.isReleased())
        return;
    idle_.expires_after(*settings_.idle);
    idle_.async_wait([this](const asio::error_code& cancelled) {
        if (cancelled || clients_.count() > 0)
            return;
        retry_.cancel();
        line_.release();
    });
}

void Share::logRequest(const ShareClient& client, const Turn& turn, bool wasAnswered) {
    if (log_.isOpen())
        log_.request(client, turn, turn.plan().callNames(descriptions_), wasAnswered);
}

} // namespace TAVO::cli
