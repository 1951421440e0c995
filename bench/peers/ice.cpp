#include <bench/peers/peer.h>

#include <future>
#include <stdexcept>

#include <Ice/Ice.h>

#include "appliance.h"

namespace {

using bench::peers::Bytes;

class Served final : public PeerIce::Appliance {
    PeerIce::Result turn(PeerIce::Call call, const Ice::Current&) override {
        return {0, static_cast<Ice::Byte>(call.on ? 1 : 0)};
    }
    PeerIce::Results batch(PeerIce::Calls calls, const Ice::Current& current) override {
        PeerIce::Results results;
        results.reserve(calls.size());
        for (const auto& call : calls)
            results.push_back(turn(call, current));
        return results;
    }
    PeerIce::Block fetch(int length, const Ice::Current&) override {
        return PeerIce::Block(static_cast<std::size_t>(length), bench::peers::served);
    }
    int store(std::pair<const Ice::Byte*, const Ice::Byte*> data, const Ice::Current&) override {
        return data.first == data.second ? 1 : 0;
    }
};

Ice::CommunicatorHolder withoutLimits() {
    Ice::InitializationData settings;
    settings.properties = Ice::createProperties();
    settings.properties->setProperty("Ice.MessageSizeMax", "0");
    return Ice::CommunicatorHolder(settings);
}

class IceClient final : public bench::peers::Client {
public:
    explicit IceClient(int port)
        : communicator_(withoutLimits())
        , appliance_(Ice::checkedCast<PeerIce::AppliancePrx>(
              communicator_->stringToProxy("appliance:tcp -h 127.0.0.1 -p " + std::to_string(port)))) {}

    unsigned turn(bool on) override { return appliance_->turn({16, 4, on}).state; }
    unsigned calls(std::size_t count) override {
        std::vector<std::future<PeerIce::Result>> answers;
        answers.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
            answers.push_back(appliance_->turnAsync({16, 4, true}));
        unsigned sum = 0;
        for (auto& answer : answers)
            sum += answer.get().state;
        return sum;
    }
    unsigned list(std::size_t count) override {
        PeerIce::Calls calls;
        calls.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
            calls.push_back({16, 4, true});
        unsigned sum = 0;
        for (const auto& result : appliance_->batch(calls))
            sum += result.state;
        return sum;
    }
    std::size_t download(std::size_t length) override {
        return appliance_->fetch(static_cast<int>(length)).size();
    }
    void upload(const Bytes& data) override {
        appliance_->store(std::pair(data.data(), data.data() + data.size()));
    }

private:
    Ice::CommunicatorHolder communicator_;
    std::shared_ptr<PeerIce::AppliancePrx> appliance_;
};

int portOf(const Ice::ObjectAdapter& adapter) {
    for (const auto& endpoint : adapter.getEndpoints())
        if (const auto info = std::dynamic_pointer_cast<Ice::TCPEndpointInfo>(endpoint->getInfo()))
            return info->port;
    throw std::runtime_error("the adapter has no port");
}

void serve(const std::function<void(int)>& tell) {
    const auto communicator = withoutLimits();
    const auto adapter = communicator->createObjectAdapterWithEndpoints("appliance", "tcp -h 127.0.0.1 -p 0");
    adapter->add(std::make_shared<Served>(), Ice::stringToIdentity("appliance"));
    adapter->activate();
    tell(portOf(*adapter));
    communicator->waitForShutdown();
}

} // namespace

int main() {
    return bench::peers::compare({"Ice", serve, [](int port) { return std::make_unique<IceClient>(port); }});
}
