#include <tavo/trace/capture.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/wire/byte_order.h>

namespace TAVO::trace {

namespace {

constexpr std::size_t mostConnections = 16384;
constexpr std::size_t mostDevices = 4096;
constexpr std::size_t mostProblems = 20;

bool isUsualPort(std::uint16_t port) {
    return port == DeviceFactory::DefaultPort || port == DeviceFactory::DefaultSecurePort;
}

} // namespace

struct Capture::Connection {
    Connection(Ends usedEnds, TcpAssembler::Deliver deliver)
        : ends(std::move(usedEnds))
        , assembler(std::move(deliver)) {}

    const Endpoint& device() const { return client == 0 ? ends.second : ends.first; }

    Ends ends;
    TcpAssembler assembler;
    /// The side of the client, once it is known.
    std::optional<std::size_t> client;
    std::optional<ExchangeRecorder> recorder;
    /// Of the packet that opened it.
    std::optional<std::uint32_t> firstSequence;
    /// The number of the last segment.
    std::uint64_t lastSegment = 0;
    /// Its bytes are none of this protocol.
    bool isBroken = false;

    bool isOfDevice() const {
        return isUsualPort(ends.first.port) || isUsualPort(ends.second.port) ||
               (recorder && recorder->count() > 0);
    }
    /// The less, the sooner it is forgotten.
    auto worth() const { return std::pair(assembler.hasEnded() ? 0 : isOfDevice() ? 2 : 1, lastSegment); }
};

Capture::Capture(Names names, std::size_t mostKept, ExchangeRecorder::Visit visit)
    : known_(std::move(names))
    , mostKept_(mostKept)
    , visit_(std::move(visit)) {}

Capture::~Capture() = default;

void Capture::note(const Connection& connection, const std::string& what) {
    if (connection.isOfDevice() && problems_.size() < mostProblems)
        problems_.push_back("between " + connection.ends.first.text() + " and " +
                            connection.ends.second.text() + ": " + what);
}

void Capture::finish(Connection& connection) {
    const bool lacksBytes = connection.assembler.lacksBytes();
    try {
        if (!connection.isBroken)
            connection.assembler.finish();
        if (!connection.isBroken && connection.assembler.lacksBytes())
            note(connection, "bytes are missing in the capture");
    } catch (const std::runtime_error& failure) {
        note(connection, lacksBytes ? "bytes are missing in the capture" : failure.what());
    }
    if (!connection.recorder)
        return;
    const auto device = devices_.find(connection.device());
    auto& known = device->second;
    const bool isOfDevice = connection.recorder->count() > 0 || isUsualPort(connection.device().port);
    if (isOfDevice && !std::exchange(known.isCertain, true))
        --uncertain_;
    // Requests that never had an answer may be anything.
    if (isOfDevice)
        connection.recorder->finish();
    connection.recorder.reset();
    if (--known.connections == 0 && !known.isCertain) {
        devices_.erase(device);
        --uncertain_;
    }
}

void Capture::makeRoom() {
    std::erase_if(connections_, [](const auto& entry) { return !entry.second; });
    if (connections_.size() < mostConnections / 4 * 3 && uncertain_ < mostDevices)
        return;
    std::vector<Connection*> all;
    for (const auto& [ends, connection] : connections_)
        all.push_back(connection.get());
    std::ranges::sort(all, {}, &Connection::worth);
    all.resize(all.size() / 2);
    for (auto* connection : all) {
        finish(*connection);
        connections_.erase(Ends(connection->ends));
    }
}

void Capture::deliver(Connection& connection, std::size_t from, Bytes bytes, std::chrono::nanoseconds time) {
    constexpr std::size_t headBytes = 8;
    if (!connection.client)
        connection.client = from;
    const bool isSent = from == *connection.client;
    if (!connection.recorder) {
        const auto callCount =
            isSent && bytes.size() >= headBytes ? TAVOX::loadBigEndian<std::uint32_t>(bytes.data() + 4) : 0;
        // Most that is no device shows here, before it costs anything.
        if (!isUsualPort(connection.device().port) && (!isSent || callCount > ExchangeRecorder::mostCalls))
            throw std::runtime_error("it is none of this protocol");
        auto device = devices_.find(connection.device());
        if (device == devices_.end()) {
            if (devices_.size() - uncertain_ >= mostDevices)
                throw std::runtime_error("too many devices");
            device = devices_.emplace(connection.device(), Device{known_}).first;
            ++uncertain_;
        }
        ++device->second.connections;
        connection.recorder.emplace(conversations_++, device->second.names, mostKept_, visit_);
    }
    if (isSent)
        connection.recorder->sent(bytes, time);
    else
        connection.recorder->received(bytes, time);
}

std::unique_ptr<Capture::Connection> Capture::newConnection(const Ends& ends) {
    // The assembler lives in the connection, which stays where it is.
    auto connection = std::make_unique<Connection>(ends, nullptr);
    connection->assembler = TcpAssembler(
        [this, one = connection.get()](std::size_t from, Bytes bytes, std::chrono::nanoseconds time) {
            deliver(*one, from, bytes, time);
        });
    return connection;
}

void Capture::take(const Segment& segment, std::chrono::nanoseconds time) {
    const bool isFirst = segment.from < segment.to;
    const Ends ends = isFirst ? Ends(segment.from, segment.to) : Ends(segment.to, segment.from);
    const std::size_t side = isFirst ? 0 : 1;
    if ((connections_.size() >= mostConnections || uncertain_ >= mostDevices) && !connections_.contains(ends))
        makeRoom();
    const auto [place, isNew] = connections_.try_emplace(ends);
    auto& connection = place->second;
    const bool begins = segment.isSyn && !segment.hasAcknowledged;
    // The same addresses and ports may be used again.
    if (connection && begins &&
        (connection->firstSequence ? *connection->firstSequence != segment.sequence
                                   : connection->recorder.has_value())) {
        finish(*connection);
        connection.reset();
    }
    if (!connection) {
        if (!isNew && !begins)
            return;
        connection = newConnection(ends);
    }
    connection->lastSegment = ++segments_;
    if (begins)
        connection->firstSequence = segment.sequence;
    if (!connection->client) {
        if (segment.isSyn)
            connection->client = segment.hasAcknowledged ? 1 - side : side;
        else if (isUsualPort(segment.to.port))
            connection->client = side;
        else if (isUsualPort(segment.from.port))
            connection->client = 1 - side;
    }
    try {
        connection->assembler.take(side, segment, time);
    } catch (const std::runtime_error& failure) {
        if (connection->isOfDevice() && dynamic_cast<const TooMuchOpen*>(&failure))
            throw FormatError(std::string("it has ") + failure.what());
        note(*connection, failure.what());
        connection->isBroken = true;
        finish(*connection);
        connection.reset();
    }
}

void Capture::read(std::istream& in) {
    PcapngReader reader(in);
    while (const auto packet = reader.next())
        if (const auto segment = segmentIn(*packet))
            take(*segment, packet->time);
    for (auto& [ends, connection] : connections_)
        if (connection)
            finish(*connection);
    connections_.clear();
    if (reader.isCut())
        problems_.emplace_back("the file ends within a block");
}

} // namespace TAVO::trace
