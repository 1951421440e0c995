#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/field.h>

/// The remote type whose methods are measured, defined the way an application defines its own type.
namespace bench {

using Bytes = std::vector<std::uint8_t>;

struct ExchangeRequest : TAVO::dto::request_packet {
    std::int32_t number = 0;
    Bytes data;
    static constexpr auto fields() {
        return std::tuple{TAVO::dto::Field{"number", &ExchangeRequest::number},
                          TAVO::dto::Field{"data", &ExchangeRequest::data}};
    }
};

struct ExchangeReply : TAVO::dto::reply_packet {
    std::int32_t number = 0;
    Bytes data;
    static constexpr auto fields() {
        return std::tuple{TAVO::dto::Field{"number", &ExchangeReply::number},
                          TAVO::dto::Field{"data", &ExchangeReply::data}};
    }
};

/// As small as the calls of a relay.
struct TurnRequest : TAVO::dto::request_packet {
    bool on = false;
    static constexpr auto fields() { return std::tuple{TAVO::dto::Field{"on", &TurnRequest::on}}; }
};

struct TurnReply : TAVO::dto::reply_packet {
    std::uint8_t state = 0;
    static constexpr auto fields() { return std::tuple{TAVO::dto::Field{"state", &TurnReply::state}}; }
};

struct StoreRequest : TAVO::dto::request_packet {
    Bytes data;
    static constexpr auto fields() { return std::tuple{TAVO::dto::Field{"data", &StoreRequest::data}}; }
};

struct FetchRequest : TAVO::dto::request_packet {
    std::int32_t length = 0;
    static constexpr auto fields() { return std::tuple{TAVO::dto::Field{"length", &FetchRequest::length}}; }
};

struct FetchReply : TAVO::dto::reply_packet {
    Bytes data;
    static constexpr auto fields() { return std::tuple{TAVO::dto::Field{"data", &FetchReply::data}}; }
};

TAVO::TAVOXTranscode::MethodRows gaugeRows() noexcept;

class Gauge : public TAVO::Proxy<gaugeRows> {
public:
    std::shared_ptr<TAVO::BoundMethod<ExchangeReply>> getExchangeMethod(std::int32_t number,
                                                                        const Bytes& data) const;
    /// The same call by a name of 24 letters.
    std::shared_ptr<TAVO::BoundMethod<ExchangeReply>> getLongNamedExchangeMethod(std::int32_t number,
                                                                                 const Bytes& data) const;
    std::shared_ptr<TAVO::BoundMethod<TurnReply>> getTurnMethod(bool on) const;
    std::shared_ptr<TAVO::Method> getStoreMethod(Bytes data) const;
    std::shared_ptr<TAVO::BoundMethod<FetchReply>> getFetchMethod(std::int32_t length) const;

protected:
    using Proxy::Proxy;
};

/// Registers the type. Call it once, before opening a device.
void registerGauge();

} // namespace bench
