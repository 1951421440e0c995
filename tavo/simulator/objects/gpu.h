#pragma once

#include <cstdint>
#include <memory>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/gpu_scan_port.h>
#include <tavo/simulator/models/header_status.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// A "gpuScan". While the board has no power SDO reads 0 and the pattern does not move.
class TAVO_SIMULATOR_API GpuScan : public SimulatedObject {
public:
    explicit GpuScan(std::shared_ptr<Board> board);
    void reset() override;

    GpuScanPort& port() { return port_; }
    HeaderStatus& headerStatus() { return headerStatus_; }

private:
    void serveScan();
    void servePins();

    std::shared_ptr<Board> board_;
    GpuScanPort port_;
    HeaderStatus headerStatus_;
};

/// A "gpuDebug". Its client needs a Jtag of version 1.1 named "jtag" and a GpuScan named "gpuScan" below it;
/// an I2c named "i2c" is optional.
class TAVO_SIMULATOR_API GpuDebug : public SimulatedObject {
public:
    explicit GpuDebug(std::shared_ptr<Board> board);
    void reset() override;

    std::int32_t headerMode() const { return headerMode_; }

private:
    std::int32_t headerMode_;
    HeaderStatus headerStatus_;
};

/// A "kelvorGpuDebugMux".
class TAVO_SIMULATOR_API KelvorGpuDebugMux : public SimulatedObject {
public:
    KelvorGpuDebugMux();
    void reset() override;

    std::int32_t headerMode() const { return headerMode_; }

private:
    std::int32_t headerMode_;
};

} // namespace TAVO::simulator
