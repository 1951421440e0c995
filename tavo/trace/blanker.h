#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <tavo/trace/exchange_scanner.h>
#include <tavo/trace/names.h>
#include <tavo/trace/secrets.h>

namespace TAVO::trace {

/// Overwrites the secrets in the bytes of one connection, while they pass; everything that the device sends
/// once it has sent what cannot be read.
class Blanker final : private ExchangeReceiver {
public:
    /// @param names is taught what the device tells; shared by the connections to a device.
    explicit Blanker(Names& names)
        : names_(names)
        , scanner_(*this) {}

    void sent(std::span<std::uint8_t> bytes);
    void received(std::span<std::uint8_t> bytes);

private:
    void requestHeadBytes(Bytes bytes, std::size_t offset) override;
    void callBegins(const CallId& call, std::uint32_t size) override;
    void parameterBytes(Bytes bytes) override { blankIn(bytes); }
    void resultBegins(const CallId* call, std::uint32_t size) override;
    void resultBytes(Bytes bytes) override;
    void resultEnds() override;

    void blankOut(Bytes bytes);
    void blankIn(Bytes bytes);

    Names& names_;
    ExchangeScanner scanner_;
    /// What is scanned now.
    std::span<std::uint8_t> passing_;
    /// How many bytes of it come before the end of the last result in it.
    std::size_t understood_ = 0;
    SecretFields secrets_;
    std::optional<CallId> taught_;
    std::vector<std::uint8_t> lesson_;
    /// What the device sends is none of this protocol.
    bool isLost_ = false;
};

} // namespace TAVO::trace
