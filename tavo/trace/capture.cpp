#include <tavo/trace/capture.h>

#include <optional>
#include <stdexcept>

#include <tavo/client/device/device_factory.h>

namespace TAVO::trace {

namespace {

constexpr std::size_t mostConnections = 65536;
constexpr std::size_t mostDevices = 256;
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
    /// Nothing of it is of use any more.
    bool isOver = false;
    /// Its bytes are none of this protocol.
    bool isBroken = false;
};

Capture::Capture(Names names, std::size_t mostKept, ExchangeRecorder::Visit visit)
    : known_(std::move(names))
    , mostKept_(mostKept)
    , visit_(std::move(visit)) {}

Capture::~Capture() = default;

void Capture::note(const Connection& connection, const std::string& what) {
    const bool isOfDevice = isUsualPort(connection.ends.first.port) ||
                            isUsualPort(connection.ends.second.port) ||
                            (connection.recorder && connection.recorder->count() > 0);
    if (isOfDevice && problems_.size() < mostProblems)
        problems_.push_back("between " + connection.ends.first.text() + " and " +
                            connection.ends.second.text() + ": " + what);
}

void Capture::finish(Connection& connection) {
    if (std::exchange(connection.isOver, true))
        return;
    const bool lacksBytes = connection.assembler.lacksBytes();
    try {
        if (!connection.isBroken)
            connection.assembler.finish();
        if (!connection.isBroken && connection.assembler.lacksBytes())
            note(connection, "bytes are missing in the capture");
    } catch (const std::runtime_error& failure) {
        note(connection, lacksBytes ? "bytes are missing in the capture" : failure.what());
    }
    // Requests that never had an answer may be anything.
    if (connection.recorder && (connection.recorder->count() > 0 || isUsualPort(connection.device().port)))
        connection.recorder->finish();
}

void Capture::take(const Segment& segment, std::chrono::nanoseconds time) {
    const bool isFirst = segment.from < segment.to;
    const Ends ends = isFirst ? Ends(segment.from, segment.to) : Ends(segment.to, segment.from);
    const std::size_t side = isFirst ? 0 : 1;
    auto& connection = connections_[ends];
    const bool begins = segment.isSyn && !segment.hasAcknowledged;
    if (connection && begins && connection->recorder) {
        finish(*connection);
        connection.reset();
    }
    if (!connection) {
        if (connections_.size() > mostConnections)
            throw FormatError("it has too many connections");
        // The assembler lives in the connection, which stays where it is.
        connection = std::make_unique<Connection>(ends, nullptr);
        auto* const one = connection.get();
        one->assembler =
            TcpAssembler([this, one](std::size_t from, Bytes bytes, std::chrono::nanoseconds at) {
                if (!one->client)
                    one->client = from;
                if (!one->recorder) {
                    if (!names_.contains(one->device()) && names_.size() >= mostDevices)
                        throw std::runtime_error("too many devices");
                    auto& names = names_.try_emplace(one->device(), known_).first->second;
                    one->recorder.emplace(conversations_++, names, mostKept_, visit_);
                }
                if (from == *one->client)
                    one->recorder->sent(bytes, at);
                else
                    one->recorder->received(bytes, at);
            });
    }
    if (connection->isOver)
        return;
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
        note(*connection, failure.what());
        connection->isBroken = true;
        finish(*connection);
    }
}

void Capture::read(std::istream& in) {
    PcapngReader reader(in);
    while (const auto packet = reader.next())
        if (const auto segment = segmentIn(*packet))
            take(*segment, packet->time);
    for (auto& [ends, connection] : connections_)
        finish(*connection);
    if (reader.isCut())
        problems_.emplace_back("the file ends within a block");
}

} // namespace TAVO::trace
