#include <bench/peers/python_client.h>

#include <atomic>
#include <stdexcept>

#include <bench/bench.h>

namespace {

using bench::peers::Bytes;

/// tavo_client itself. Its server is the one of the raw client: there is no other that is not the simulator.
class LibraryClient final : public bench::peers::Client {
public:
    explicit LibraryClient(int port)
        : device_(TAVO::DeviceFactory::buildDevice("127.0.0.1", port, "engineer", "tavo", false))
        , gauge_(bench::firstGauge(*device_)) {}

    unsigned turn(bool on) override {
        const auto method = gauge_.getTurnMethod(on);
        device_->call(method);
        return method->take().state;
    }
    unsigned calls(std::size_t count) override {
        const auto queue = std::make_shared<TAVO::MulticallQueue>();
        std::vector<std::shared_ptr<TAVO::BoundMethod<bench::TurnReply>>> methods;
        methods.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            methods.push_back(gauge_.getTurnMethod(true));
            queue->add(methods.back());
        }
        device_->multicall(queue);
        unsigned sum = 0;
        for (const auto& method : methods)
            sum += method->take().state;
        return sum;
    }
    unsigned list(std::size_t) override { throw std::logic_error("a batch is a list of calls"); }
    std::size_t download(std::size_t length) override {
        const auto method = gauge_.getFetchMethod(static_cast<std::int32_t>(length));
        device_->call(method);
        return method->take().data.size();
    }
    void upload(const Bytes& data) override { device_->call(gauge_.getStoreMethod(data)); }

private:
    std::shared_ptr<TAVO::Device> device_;
    const bench::Gauge& gauge_;
};

void serve(const std::function<void(int)>& tell) {
    bench::Appliance appliance(bench::Appliance::groupSize);
    std::atomic<std::uint64_t> exchanges = 0;
    bench::serveHere(appliance, exchanges, "127.0.0.1", tell);
}

} // namespace

int main(int argc, char** argv) {
    bench::registerGauge();
    return bench::peers::compareEither(
        argc, argv,
        {"tavo_client", serve, [](int port) { return std::make_unique<LibraryClient>(port); }, false},
        "library.py");
}
