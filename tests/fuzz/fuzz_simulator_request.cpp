#include <algorithm>
#include <string>

#include <tavo/client/object/method_tables.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/wire/byte_order.h>
#include <tavo/server/limits.h>
#include <tavo/server/request_assembler.h>
#include <tests/fuzz/request_script.h>
#include <tests/support/all_types.h>

// What a client sends to a simulated appliance: the assembling of requests, their dispatch, all objects of
// all topologies. Input: the number of the topology (1 byte), then the steps of request_script.h. Every
// complete request gets an answer that a client can read, and the connection is closed for one that is too
// large.

namespace {

using fuzz::Bytes;
using fuzz::ListedMethod;
using fuzz::MemoryAppliance;
using fuzz::require;
using fuzz::View;
using TAVO::server::RequestAssembler;
using Methods = std::vector<ListedMethod>;

/// Takes an answer apart; every number in it must fit.
class Reader {
public:
    explicit Reader(View bytes)
        : rest_(bytes) {}

    View take(std::size_t count) {
        require(count <= rest_.size(), "a size in an answer fits");
        const auto head = rest_.first(count);
        rest_ = rest_.subspan(count);
        return head;
    }
    std::uint32_t number() { return TAVOX::loadBigEndian<std::uint32_t>(take(4).data()); }
    View block() {
        const auto size = number();
        return take(size);
    }
    bool atEnd() const { return rest_.empty(); }

private:
    View rest_;
};

const TAVO::TAVOXTranscode::MethodRow* rowOf(const ListedMethod& method) {
    for (const auto rows : {support::rowsOf(method.type, method.version), support::rowsOf("base", "1.0")})
        for (const auto& row : rows)
            if (row.name == method.name)
                return &row;
    return nullptr; // the table of another version is used, or none
}

void checkResult(View result, const ListedMethod* method) {
    require(result.size() >= 4, "a result has a return code");
    const auto* row = method ? rowOf(*method) : nullptr;
    if (!row)
        return;
    TAVOX::InputStream in(result.data(), result.size());
    static_cast<void>(row->decoder(in));
    require(!in.failed() && in.remaining() == 0, "a result is what the client reads", method->name);
}

const ListedMethod* find(const Methods& methods, std::uint32_t instanceId, std::uint32_t methodId) {
    const auto found = std::find_if(methods.begin(), methods.end(), [&](const auto& candidate) {
        return candidate.instanceId == instanceId && candidate.methodId == methodId;
    });
    return found == methods.end() ? nullptr : &*found;
}

void checkAnswer(View answer, View request, const Methods& methods) {
    Reader asked(request);
    asked.number();
    const auto calls = asked.number();
    Reader reader(answer);
    require(reader.block().empty(), "there are no status bytes");
    const auto error = reader.block();
    const auto results = reader.number();
    require(results <= calls, "there is at most one result for each call");
    require(results == calls || !error.empty(), "a result is missing only behind an error");
    if (!error.empty()) {
        Reader fault(error);
        const auto position = fault.number();
        const auto code = fault.number();
        fault.block();
        require(fault.atEnd(), "an error block ends with its message");
        require(position < calls && code >= 1000, "an error has the position of a call, and a code");
        require(results == position + (code == 1006 ? 1 : 0), "the results end with the call that failed");
    }
    for (std::uint32_t i = 0; i < results; ++i) {
        const auto instanceId = asked.number();
        const auto methodId = asked.number();
        asked.block();
        checkResult(reader.block(), find(methods, instanceId, methodId));
    }
    require(reader.atEnd(), "an answer ends with its last result");
}

/// False when the connection ends.
bool serve(RequestAssembler& assembler, MemoryAppliance& appliance, const Methods& methods) {
    for (;;) {
        switch (assembler.scan()) {
        case RequestAssembler::State::incomplete:
            return true;
        case RequestAssembler::State::tooLarge: {
            const auto response = appliance.refuse();
            require(response.closesConnection && !response.bytes.empty(), "too large a request is refused");
            return false;
        }
        case RequestAssembler::State::complete: {
            const auto request = assembler.take();
            const auto response = appliance.respond(request);
            checkAnswer(response.bytes, request, methods);
            require(response.delay.count() >= 0, "an answer is not delayed into the past");
            if (response.closesAllConnections)
                return false;
        }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    fuzz::Input script(bytes, length);
    const auto number = script.byte();
    static std::map<const TAVO::simulator::Topology*, Methods> known;
    const auto& topology = fuzz::topologyNumber(number);
    MemoryAppliance appliance(topology);
    auto& methods = known[&topology];
    if (methods.empty())
        methods = fuzz::listMethods(appliance);

    RequestAssembler assembler;
    while (!script.empty()) {
        assembler.feed(fuzz::nextBytes(script, methods, appliance.lockId()));
        if (!serve(assembler, appliance, methods))
            assembler = RequestAssembler();
    }
    return 0;
}
