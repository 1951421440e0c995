#include <bench/allocation_count.h>
#include <bench/bench.h>

#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/wire/socket_transport.h>

namespace bench {

namespace {

/// The data of the reply. The record comes from the memory of an earlier one.
constexpr std::size_t ownOfReply = 1;

template <class Exchange>
double takenBy(Exchange exchange, std::size_t calls) {
    for (int i = 0; i < 2; ++i)
        exchange(); // allocates the buffers and records that later exchanges reuse
    const auto before = allocationCount();
    exchange();
    return static_cast<double>(allocationCount() - before) - static_cast<double>(calls * ownOfReply);
}

} // namespace

void measureAllocations(Run& run) {
    // Request and reply nearly fill what needs no heap memory: one chunk of 24480 bytes, 64 KiB.
    constexpr std::size_t large = 600;
    Bench bench(run.processors.front());
    const auto queue = exchangeQueue(bench.gauge, large);
    const auto batch = batchOf(*queue);
    const auto method = batch.front();
    TAVO::SocketTransport transport(bench.server.address(), std::to_string(bench.server.port()));
    TAVO::CallExchange exchange(transport);

    const std::string beside = "besides replies";
    run.report.addCount("single call", beside, takenBy([&] { bench.device->call(method); }, 1), 0);
    run.report.addCount("exchange of 600 calls", beside,
                        takenBy([&] { exchange.run(Appliance::lockId, batch); }, large), 0);
    run.report.addCount("multicall of 600 calls", beside,
                        takenBy([&] { bench.device->multicall(queue); }, large), 0);

    const auto before = allocationCount();
    const auto built = bench.gauge.getExchangeMethod(exchangeNumber, exchangeData());
    run.report.addFigure("building a Method", "allocations", static_cast<double>(allocationCount() - before));
}

} // namespace bench
