#include <tavo/cli/i2c_transfers.h>

#include <algorithm>
#include <memory>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/session_access.h>
#include <tavo/toolkit/i2c.h>

namespace TAVO::cli {

namespace {

using HWDebug::I2c_v1_0;
using toolkit::notAcknowledgedCode;
namespace i2c_v1_0 = TAVOXTranscode::i2c_v1_0;
using Read = std::shared_ptr<BoundMethod<HWDebug::I2c_v1_0_Structs::I2cTransfer>>;

constexpr std::uint32_t blockSize = 1024;
constexpr std::size_t blocksPerExchange = 16;
/// Enough for a write cycle of 10 ms at 400 kHz. Every device that can retry accepts this value.
constexpr int patientRetryLimit = 1000;

int addressOf(const I2cTarget& target) { return static_cast<int>(target.address); }

std::vector<std::uint8_t> registerBytes(const I2cTarget& target, std::uint32_t number) {
    const auto low = static_cast<std::uint8_t>(number);
    if (target.wide)
        return {static_cast<std::uint8_t>(number >> 8), low};
    return {low};
}

/// For calls where a missing acknowledge is a normal result.
bool wasAcknowledged(const Method& method) {
    if (method.returnCode() == notAcknowledgedCode)
        return false;
    requireSuccess(method);
    return true;
}

void requireAcknowledge(const I2cTarget& target, const Method& method) {
    if (!wasAcknowledged(method))
        throw notAcknowledged(target);
}

Read reading(const I2cTarget& target, std::uint32_t first, std::uint32_t count) {
    return target.bus.getTransferMethod(addressOf(target), 0, registerBytes(target, first),
                                        static_cast<int>(count));
}

/// One transfer for every `step` registers.
std::vector<Read> readings(const I2cTarget& target, NumberRange registers, std::uint32_t step) {
    std::vector<Read> reads;
    for (std::uint32_t done = 0; done < registers.size(); done += step)
        reads.push_back(reading(target, registers.first + done, std::min(step, registers.size() - done)));
    return reads;
}

void append(const Read& read, std::uint32_t count, std::vector<RegisterByte>& bytes) {
    if (!wasAcknowledged(*read)) {
        bytes.insert(bytes.end(), count, std::nullopt);
        return;
    }
    const auto data = read->take().data;
    if (data.size() != count)
        throw Failure(ExitCode::refused,
                      fmt::format("{} read {} bytes instead of {}", read->getFullName(), data.size(), count));
    bytes.insert(bytes.end(), data.begin(), data.end());
}

std::vector<RegisterByte> readInSteps(Session& session, const I2cTarget& target, NumberRange registers,
                                      std::uint32_t step, std::size_t stepsPerExchange) {
    const auto reads = readings(target, registers, step);
    std::vector<RegisterByte> bytes;
    for (std::size_t done = 0; done < reads.size(); done += stepsPerExchange) {
        const auto begin = reads.begin() + static_cast<std::ptrdiff_t>(done);
        const auto end = begin + static_cast<std::ptrdiff_t>(std::min(stepsPerExchange, reads.size() - done));
        session.run({begin, end});
        for (auto read = begin; read != end; ++read)
            append(*read, std::min(step, registers.size() - static_cast<std::uint32_t>(bytes.size())), bytes);
    }
    return bytes;
}

/// Raises the address retry limit while it exists.
class PatientBus {
public:
    PatientBus(Session& session, const I2c_v1_0& bus)
        : session_(session)
        , bus_(bus)
        , before_(session.value(bus, i2c_v1_0::optionAddressRetryLimitGet).limit) {
        session_.execute(bus_, i2c_v1_0::optionAddressRetryLimitSet, patientRetryLimit);
    }
    PatientBus(const PatientBus&) = delete;
    PatientBus& operator=(const PatientBus&) = delete;
    ~PatientBus() {
        try {
            restore();
        } catch (const std::exception&) {
            // A more important exception is already on its way.
        }
    }

    void restore() {
        if (before_ != patientRetryLimit)
            session_.execute(bus_, i2c_v1_0::optionAddressRetryLimitSet,
                             std::exchange(before_, patientRetryLimit));
    }

private:
    Session& session_;
    const I2c_v1_0& bus_;
    int before_;
};

std::vector<std::shared_ptr<Method>> pageWrites(const I2cTarget& target, std::uint32_t first,
                                                std::span<const std::uint8_t> bytes, std::uint32_t pageSize) {
    std::vector<std::shared_ptr<Method>> writes;
    while (!bytes.empty()) {
        const auto length = std::min<std::size_t>(pageSize - first % pageSize, bytes.size());
        auto data = registerBytes(target, first);
        data.insert(data.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
        writes.push_back(target.bus.getWriteMethod(addressOf(target), true, true, 0, data));
        first += static_cast<std::uint32_t>(length);
        bytes = bytes.subspan(length);
    }
    return writes;
}

void requireEqual(std::uint32_t first, std::span<const std::uint8_t> wanted,
                  std::span<const std::uint8_t> found) {
    const auto [want, have] = std::mismatch(wanted.begin(), wanted.end(), found.begin(), found.end());
    if (want != wanted.end())
        throw Failure(ExitCode::refused,
                      fmt::format("register 0x{:02x} reads back {}, not 0x{:02x}",
                                  first + static_cast<std::uint32_t>(want - wanted.begin()),
                                  have == found.end() ? "nothing" : fmt::format("0x{:02x}", *have), *want));
}

} // namespace

Failure notAcknowledged(const I2cTarget& target) {
    return {ExitCode::refused, fmt::format("{}: address 0x{:02x} does not acknowledge",
                                           target.bus.getFullName(), target.address)};
}

std::vector<std::uint32_t> acknowledgingAddresses(Session& session, const I2c_v1_0& bus, NumberRange range) {
    SessionAccess access(session);
    return toolkit::acknowledgingAddresses(access, bus, range.first, range.last);
}

std::vector<RegisterByte> readEach(Session& session, const I2cTarget& target, NumberRange registers) {
    return readInSteps(session, target, registers, 1, registers.size());
}

std::vector<RegisterByte> readInBlocks(Session& session, const I2cTarget& target, NumberRange registers) {
    return readInSteps(session, target, registers, blockSize, blocksPerExchange);
}

std::vector<std::uint8_t> readRun(Session& session, const I2cTarget& target,
                                  std::optional<std::uint32_t> first, std::uint32_t count) {
    const auto check = [&](const Method& read) { requireAcknowledge(target, read); };
    if (first) {
        const auto read = reading(target, *first, count);
        session.run({read});
        check(*read);
        return read->take().data;
    }
    const auto read = target.bus.getReadMethod(addressOf(target), true, true, static_cast<int>(count));
    session.run({read});
    check(*read);
    return read->take().data;
}

void writePointer(Session& session, const I2cTarget& target, std::uint32_t number) {
    const auto write =
        target.bus.getWriteMethod(addressOf(target), true, true, 0, registerBytes(target, number));
    session.run({write});
    requireAcknowledge(target, *write);
}

void writePages(Session& session, const I2cTarget& target, std::uint32_t first,
                std::span<const std::uint8_t> bytes, std::uint32_t pageSize, bool verify) {
    PatientBus patience(session, target.bus);
    const auto writes = pageWrites(target, first, bytes, pageSize);
    auto calls = writes;
    // Reading also waits until the last page is stored. Without --verify the result is ignored: some devices
    // are write-only.
    const auto back = verify ? reading(target, first, static_cast<std::uint32_t>(bytes.size())) : nullptr;
    if (back)
        calls.push_back(back);
    else
        calls.push_back(target.bus.getReadMethod(addressOf(target), true, true, 1));
    session.run(calls);
    for (const auto& write : writes)
        requireAcknowledge(target, *write);
    if (back) {
        requireAcknowledge(target, *back);
        requireEqual(first, bytes, back->value().data);
    }
    patience.restore();
}

} // namespace TAVO::cli
