#include <bench/bench.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

#include <bench/prepared_transport.h>
#include <tavo/client/exchange/call_exchange.h>

namespace bench {

std::size_t Run::rounds(std::size_t usual) const {
    return std::max<std::size_t>(3,
                                 static_cast<std::size_t>(std::lround(effort * static_cast<double>(usual))));
}

void Run::writePlot(const std::string& name, const std::vector<std::vector<double>>& rows) const {
    if (plotFolder.empty())
        return;
    std::ofstream file(plotFolder + "/" + name + ".dat");
    for (const auto& row : rows) {
        for (const auto value : row)
            file << value << ' ';
        file << '\n';
    }
}

Bench::Bench(int processor, std::size_t gauges)
    : appliance(gauges)
    , server(appliance, processor)
    , device(openDevice())
    , raw(connectRaw())
    , gauge(firstGauge(*device)) {}

Bench::Bench(int processor, const std::string& address, const std::function<void()>& prepareServer,
             const std::function<void()>& prepareClient)
    : appliance(Appliance::groupSize)
    , server(appliance, processor, address, prepareServer)
    , device(openAfter(prepareClient))
    , raw(connectRaw())
    , gauge(firstGauge(*device)) {}

std::shared_ptr<TAVO::Device> Bench::openAfter(const std::function<void()>& prepare) const {
    prepare();
    return openDevice();
}

std::shared_ptr<TAVO::Device> Bench::openDevice(const TAVO::OpenOptions& options) const {
    return TAVO::DeviceFactory::buildDevice(server.address(), server.port(), "engineer", "tavo", false,
                                            options);
}

const Gauge& firstGauge(const TAVO::Device& device) {
    return dynamic_cast<const Gauge&>(*device.getChild("gauge0"));
}

Bytes exchangeData() { return Bytes(16, 0xA5); }

Bytes exchangeParameters() {
    return support::joined(
        {support::u32(static_cast<std::uint32_t>(exchangeNumber)), support::block(exchangeData())});
}

RawCall::RawCall(Appliance& appliance, const char* method, const Bytes& parameters, std::size_t count)
    : request(appliance.request(Appliance::lockId, Appliance::firstGauge, method, parameters,
                                static_cast<std::uint32_t>(count)))
    , reply(appliance.replyTo(request).size()) {}

std::vector<std::shared_ptr<TAVO::Method>> batchOf(TAVO::MulticallQueue& queue) {
    return {queue.getMethods().begin(), queue.getMethods().end()};
}

std::shared_ptr<TAVO::MulticallQueue> exchangeQueue(const Gauge& gauge, std::size_t count) {
    const auto data = exchangeData();
    auto queue = std::make_shared<TAVO::MulticallQueue>();
    for (std::size_t i = 0; i < count; ++i)
        queue->add(gauge.getExchangeMethod(exchangeNumber, data));
    return queue;
}

void insistOnSameBytes(Appliance& appliance, const RawCall& raw, const TAVO::MulticallQueue& queue) {
    PreparedTransport transport(appliance.replyTo(raw.request), raw.request.size());
    auto copy = queue;
    TAVO::CallExchange(transport).run(Appliance::lockId, batchOf(copy));
    if (transport.sent() != raw.request)
        throw std::runtime_error("the library and the raw client do not send the same bytes");
}

} // namespace bench
