#include <algorithm>
#include <memory>
#include <string>

#include <tavo/cli/batch_file.h>
#include <tavo/simulator/topology.h>
#include <tests/fuzz/simulated_device.h>

// The tool's batch files and, in them, its calls and values. Input: the file. Every line becomes a call that
// can be encoded and says what its words say, or a failure that names the line.

namespace {

using fuzz::require;
using TAVO::cli::BatchLine;
using TAVO::cli::ExitCode;
using TAVO::cli::Failure;
using Objects = std::vector<std::shared_ptr<TAVO::Object_v1_0>>;

/// The objects of an appliance that stays open.
const Objects& objects() {
    static fuzz::MemoryAppliance appliance(fuzz::topologyNumber(0));
    static fuzz::AppliancePeer peer(appliance);
    static const auto device = std::make_shared<fuzz::MemoryDevice>(peer);
    static const auto all = [] {
        fuzz::open(device);
        return fuzz::objectsOf(*device);
    }();
    return all;
}

void checkCall(const TAVO::cli::PreparedCall& call) {
    const auto params = call.method->getParams();
    TAVOX::OutputStream out;
    call.method->getEncoder()(out, params);
    require((call.row->request != nullptr) == (params.request != nullptr),
            "a call has the parameters of its method");
    if (!call.row->request)
        return;
    fuzz::Bytes bytes;
    for (const auto chunk : out.chunks())
        bytes.insert(bytes.end(), chunk.begin(), chunk.end());
    TAVOX::InputStream in(bytes.data(), bytes.size());
    const auto copy = call.row->request->create();
    call.row->request->read(in, *copy);
    require(!in.failed() && in.remaining() == 0, "a call can be encoded");
    require(call.row->request->toValue(*copy) == call.row->request->toValue(*params.request),
            "the bytes of a call say what its words say");
}

void checkLine(const BatchLine& line) {
    require(!line.words.object.empty() && !line.words.method.empty(), "a call has an object and a method");
    const auto found = std::find_if(objects().begin(), objects().end(), [&](const auto& object) {
        return object->getFullName() == line.words.object;
    });
    if (found == objects().end())
        return;
    try {
        checkCall(TAVO::cli::at(line.place, [&] { return TAVO::cli::prepareCall(*found, line.words); }));
    } catch (const Failure& failure) {
        require(failure.code == ExitCode::usage || failure.code == ExitCode::notFound,
                "a slip is the user's");
        require(std::string(failure.what()).starts_with(line.place + ": "), "a failure names its line");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    static_cast<void>(objects());
    const std::string content(bytes, bytes + length);
    try {
        std::size_t last = 0;
        for (const auto& line : TAVO::cli::parseBatch("calls", content)) {
            require(line.number > last, "lines are counted in order");
            last = line.number;
            checkLine(line);
        }
        require(last <= 1 + static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n')),
                "there is no line behind the last");
    } catch (const Failure& failure) {
        require(failure.code == ExitCode::usage && std::string(failure.what()).starts_with("calls:"),
                "a failure names its line");
    }
    return 0;
}
