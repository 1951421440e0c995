#include <tavo/simulator/objects/gpu.h>

#include <utility>

#include <tavo/client/hwdebug/gpu_debug.h>
#include <tavo/client/hwdebug/gpu_scan.h>
#include <tavo/client/hwdebug/kelvor_gpu_debug_mux.h>
#include <tavo/simulator/objects/enable_methods.h>
#include <tavo/simulator/objects/frequency_methods.h>
#include <tavo/simulator/objects/header_status_methods.h>

namespace TAVO::simulator {

namespace {

namespace gpuDebug_v1_0 = TAVOXTranscode::gpuDebug_v1_0;
namespace gpuScan_v1_0 = TAVOXTranscode::gpuScan_v1_0;
namespace kelvorGpuDebugMux_v1_0 = TAVOXTranscode::kelvorGpuDebugMux_v1_0;

constexpr std::int32_t firstHeaderMode = 1;
constexpr std::int32_t highestHeaderMode = 3;

template <class GetReply, class SetRequest>
void serveHeaderMode(SimulatedObject& object, const TAVOXTranscode::Call<None, GetReply>& get,
                     const TAVOXTranscode::Call<SetRequest>& set, std::int32_t& mode) {
    object.on(get, [&mode] { return makeRecord<GetReply>(mode); });
    object.on(set, [&mode](const SetRequest& request) {
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
    serveFrequency(*this, gpuScan_v1_0::optionSckFrequencyGet, gpuScan_v1_0::optionSckFrequencySet, port_);
    serveEnable(*this, port_);
    serveHeaderStatus(*this, headerStatus_);
}

void GpuScan::reset() {
    port_.reset();
    headerStatus_.clear();
}

void GpuScan::serveScan() {
    using namespace dto::gpuScan;
    on(gpuScan_v1_0::scan, [this](const ScanRequest& request) {
        requireEnabled(port_);
        auto position = port_;
        auto bits = position.scan(request.count);
        if (!bits)
            throw Refusal(return_code::badArgument);
        if (board_->powered())
            port_ = position;
        else
            bits->assign(bits->size(), 0);
        return makeRecord<ScanReply>(std::move(*bits));
    });
}

void GpuScan::servePins() {
    using namespace dto::Header;
    on(gpuScan_v1_0::ioSckGet,
       [this] { return makeRecord<IoGetReply>(port_.sck().driven, port_.sck().level); });
    on(gpuScan_v1_0::ioSckSet, [this](const IoSetRequest& request) {
        requireEnabled(port_);
        port_.setSck({request.first, request.second}, board_->powered());
    });
    on(gpuScan_v1_0::ioSdoGet, [this] { return makeRecord<iGetReply>(board_->powered() && port_.sdo()); });
}

GpuDebug::GpuDebug(std::shared_ptr<Board> board)
    : SimulatedObject("gpuDebug", "1.0")
    , headerMode_(firstHeaderMode)
    , headerStatus_(board, {"GPU-DEBUG"}, {"GPU"}) {
    serveHeaderMode(*this, gpuDebug_v1_0::headerModeGet, gpuDebug_v1_0::headerModeSet, headerMode_);
    serveHeaderStatusGet(*this, headerStatus_);
    on(gpuDebug_v1_0::ioPxEnGet,
       [board = std::move(board)] { return makeRecord<dto::gpuDebug::IoPxEnGetReply>(board->powered()); });
}

void GpuDebug::reset() {
    headerMode_ = firstHeaderMode;
    headerStatus_.clear();
}

KelvorGpuDebugMux::KelvorGpuDebugMux()
    : SimulatedObject("kelvorGpuDebugMux", "1.0")
    , headerMode_(firstHeaderMode) {
    serveHeaderMode(*this, kelvorGpuDebugMux_v1_0::headerModeGet, kelvorGpuDebugMux_v1_0::headerModeSet,
                    headerMode_);
}

void KelvorGpuDebugMux::reset() { headerMode_ = firstHeaderMode; }

} // namespace TAVO::simulator
