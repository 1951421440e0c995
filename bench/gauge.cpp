#include <bench/gauge.h>

#include <utility>

namespace bench {

namespace {

namespace wire = TAVO::TAVOXTranscode;

constexpr wire::MethodRow gaugeRows[] = {
    wire::row<ExchangeRequest, ExchangeReply>("exchange"),
    wire::row<StoreRequest, wire::None>("store"),
    wire::row<FetchRequest, FetchReply>("fetch"),
};

struct GaugeEncoders : wire::base_v1_0::EncoderList {
    GaugeEncoders() { enter(gaugeRows); }
};

struct GaugeDecoders : wire::base_v1_0::DecoderList {
    GaugeDecoders() { enter(gaugeRows); }
};

class GaugeFactory : public TAVO::ObjectFactory {
public:
    GaugeFactory()
        : ObjectFactory("gauge") {}

private:
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0>) override {
        static const GaugeEncoders encoders;
        static const GaugeDecoders decoders;
        return create<Gauge>(device, parent, name, instanceId, encoders, decoders);
    }
};

} // namespace

std::shared_ptr<TAVO::BoundMethod<ExchangeReply>> Gauge::getExchangeMethod(std::int32_t number,
                                                                           const Bytes& data) const {
    return prepare<ExchangeReply>("exchange", wire::makeRequest<ExchangeRequest>(number, data));
}

std::shared_ptr<TAVO::Method> Gauge::getStoreMethod(Bytes data) const {
    return prepare("store", wire::makeRequest<StoreRequest>(std::move(data)));
}

std::shared_ptr<TAVO::BoundMethod<FetchReply>> Gauge::getFetchMethod(std::int32_t length) const {
    return prepare<FetchReply>("fetch", wire::makeRequest<FetchRequest>(length));
}

void registerGauge() {
    TAVO::CoreObjects::registerCoreObjects();
    static GaugeFactory factory;
}

} // namespace bench
