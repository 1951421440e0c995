#include <tavo/simulator/objects/gpu.h>

#include <utility>

#include <tavo/client/hwdebug/gpu_debug_records.h>
#include <tavo/client/hwdebug/gpu_scan_records.h>
#include <tavo/client/hwdebug/kelvor_gpu_debug_mux_records.h>
#include <tavo/simulator/objects/enable_methods.h>
#include <tavo/simulator/objects/frequency_methods.h>
#include <tavo/simulator/objects/header_status_methods.h>

namespace TAVO::simulator {

namespace {

constexpr std::int32_t firstHeaderMode = 1;
constexpr std::int32_t highestHeaderMode = 3;

template <class GetReply, class SetRequest>
void serveHeaderMode(SimulatedObject& object, std::int32_t& mode) {
    object.on<None, GetReply>("headerModeGet", [&mode] {
        GetReply reply;
        reply.mode = mode;
        return reply;
    });
    object.on<SetRequest, None>("headerModeSet", [&mode](const SetRequest& request) {
        if (request.mode < 0 || request.mode > highestHeaderMode)
            throw Refusal(return_code::badArgument);
        mode = request.mode;
    });
}

void requireEnabled(const GpuScanPort& port) {
    if (!port.enabled())
        throw Refusal(return_code::disabled);
}

} // namespace

GpuScan::GpuScan(std::shared_ptr<Board> board)
    : SimulatedObject("gpuScan", "1.0")
    , board_(std::move(board))
    , headerStatus_(board_, {"SCAN"}, {"GPU"}) {
    serveScan();
    servePins();
    serveFrequency(*this, "optionSckFrequencyGet", "optionSckFrequencySet", port_);
    serveEnable(*this, port_);
    serveHeaderStatus(*this, headerStatus_);
}

void GpuScan::reset() {
    port_.reset();
    headerStatus_.clear();
}

void GpuScan::serveScan() {
    using namespace dto::gpuScan;
    on<ScanRequest, ScanReply>("scan", [this](const ScanRequest& request) {
        requireEnabled(port_);
        auto position = port_;
        auto bits = position.scan(request.count);
        if (!bits)
            throw Refusal(return_code::badArgument);
        ScanReply reply;
        if (board_->powered()) {
            port_ = position;
            reply.data = std::move(*bits);
        } else {
            reply.data.assign(bits->size(), 0);
        }
        return reply;
    });
}

void GpuScan::servePins() {
    using namespace dto::Header;
    on<None, IoGetReply>("ioSckGet", [this] {
        IoGetReply reply;
        reply.first = port_.sck().driven;
        reply.second = port_.sck().level;
        return reply;
    });
    on<IoSetRequest, None>("ioSckSet", [this](const IoSetRequest& request) {
        requireEnabled(port_);
        port_.setSck({request.first, request.second}, board_->powered());
    });
    on<None, iGetReply>("ioSdoGet", [this] {
        iGetReply reply;
        reply.level = board_->powered() && port_.sdo();
        return reply;
    });
}

GpuDebug::GpuDebug(std::shared_ptr<Board> board)
    : SimulatedObject("gpuDebug", "1.0")
    , headerMode_(firstHeaderMode)
    , headerStatus_(board, {"GPU-DEBUG"}, {"GPU"}) {
    using namespace dto::gpuDebug;
    serveHeaderMode<HeaderModeGetReply, HeaderModeSetRequest>(*this, headerMode_);
    serveHeaderStatusGet(*this, headerStatus_);
    on<None, IoPxEnGetReply>("ioPxEnGet", [board = std::move(board)] {
        IoPxEnGetReply reply;
        reply.level = board->powered();
        return reply;
    });
}

void GpuDebug::reset() {
    headerMode_ = firstHeaderMode;
    headerStatus_.clear();
}

KelvorGpuDebugMux::KelvorGpuDebugMux()
    : SimulatedObject("kelvorGpuDebugMux", "1.0")
    , headerMode_(firstHeaderMode) {
    using namespace dto::kelvorGpuDebugMux;
    serveHeaderMode<HeaderModeGetReply, HeaderModeSetRequest>(*this, headerMode_);
}

void KelvorGpuDebugMux::reset() { headerMode_ = firstHeaderMode; }

} // namespace TAVO::simulator
