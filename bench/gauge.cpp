#include <bench/gauge.h>

#include <utility>

#include <tavo/client/transcode/table.h>

namespace bench {

namespace {

namespace wire = TAVO::TAVOXTranscode;

constexpr wire::Call<ExchangeRequest, ExchangeReply> exchange{"exchange"};
constexpr wire::Call<ExchangeRequest, ExchangeReply> longNamedExchange{"exchangeNumberAndAllData"};
constexpr wire::Call<TurnRequest, TurnReply> turn{"turn"};
constexpr wire::Call<StoreRequest> store{"store"};
constexpr wire::Call<FetchRequest, FetchReply> fetch{"fetch"};
constexpr auto table = wire::tableOf(exchange, longNamedExchange, turn, store, fetch);

class GaugeFactory : public TAVO::TypeFactory {
public:
    GaugeFactory()
        : TypeFactory("gauge", {servedBy<Gauge>("1.0", nullptr)}) {}
};

} // namespace

wire::MethodRows gaugeRows() noexcept { return table; }

std::shared_ptr<TAVO::BoundMethod<ExchangeReply>> Gauge::getExchangeMethod(std::int32_t number,
                                                                           const Bytes& data) const {
    return make(exchange, number, data);
}

std::shared_ptr<TAVO::BoundMethod<ExchangeReply>> Gauge::getLongNamedExchangeMethod(std::int32_t number,
                                                                                    const Bytes& data) const {
    return make(longNamedExchange, number, data);
}

std::shared_ptr<TAVO::BoundMethod<TurnReply>> Gauge::getTurnMethod(bool on) const { return make(turn, on); }

std::shared_ptr<TAVO::Method> Gauge::getStoreMethod(Bytes data) const { return make(store, std::move(data)); }

std::shared_ptr<TAVO::BoundMethod<FetchReply>> Gauge::getFetchMethod(std::int32_t length) const {
    return make(fetch, length);
}

void registerGauge() {
    TAVO::CoreObjects::registerCoreObjects();
    static GaugeFactory factory;
}

} // namespace bench
