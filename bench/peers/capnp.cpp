#include <bench/peers/peer.h>

#include <algorithm>

#include <capnp/ez-rpc.h>

#include "appliance.capnp.h"

namespace {

using bench::peers::Bytes;

class Served final : public Appliance::Server {
    kj::Promise<void> turn(TurnContext context) override {
        context.getResults().initResult().setState(context.getParams().getCall().getOn() ? 1 : 0);
        return kj::READY_NOW;
    }
    kj::Promise<void> batch(BatchContext context) override {
        const auto calls = context.getParams().getCalls();
        auto results = context.getResults().initResults(calls.size());
        for (unsigned i = 0; i < calls.size(); ++i)
            results[i].setState(calls[i].getOn() ? 1 : 0);
        return kj::READY_NOW;
    }
    kj::Promise<void> fetch(FetchContext context) override {
        const auto length = context.getParams().getLength();
        auto data = context.getResults(capnp::MessageSize{length / 8 + 64, 0}).initData(length);
        std::fill(data.begin(), data.end(), bench::peers::served);
        return kj::READY_NOW;
    }
    kj::Promise<void> store(StoreContext context) override {
        context.getResults().setCode(context.getParams().getData().size() > 0 ? 0 : 1);
        return kj::READY_NOW;
    }
};

class CapnpClient final : public bench::peers::Client {
public:
    explicit CapnpClient(int port)
        : client_("127.0.0.1", static_cast<unsigned>(port))
        , appliance_(client_.getMain<Appliance>()) {}
    ~CapnpClient() noexcept override = default;

    unsigned turn(bool on) override {
        auto request = appliance_.turnRequest();
        fill(request.initCall(), on);
        return request.send().wait(client_.getWaitScope()).getResult().getState();
    }
    unsigned calls(std::size_t count) override {
        std::vector<capnp::RemotePromise<Appliance::TurnResults>> answers;
        answers.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            auto request = appliance_.turnRequest();
            fill(request.initCall(), true);
            answers.push_back(request.send());
        }
        unsigned sum = 0;
        for (auto& answer : answers)
            sum += answer.wait(client_.getWaitScope()).getResult().getState();
        return sum;
    }
    unsigned list(std::size_t count) override {
        auto request = appliance_.batchRequest();
        for (auto call : request.initCalls(static_cast<unsigned>(count)))
            fill(call, true);
        const auto response = request.send().wait(client_.getWaitScope());
        unsigned sum = 0;
        for (const auto result : response.getResults())
            sum += result.getState();
        return sum;
    }
    std::size_t download(std::size_t length) override {
        auto request = appliance_.fetchRequest();
        request.setLength(static_cast<std::uint32_t>(length));
        return request.send().wait(client_.getWaitScope()).getData().size();
    }
    void upload(const Bytes& data) override {
        auto request = appliance_.storeRequest(capnp::MessageSize{data.size() / 8 + 64, 0});
        request.setData(kj::arrayPtr(data.data(), data.size()));
        request.send().wait(client_.getWaitScope());
    }

private:
    static void fill(Call::Builder call, bool on) {
        call.setObject(16);
        call.setMethod(4);
        call.setOn(on);
    }

    capnp::EzRpcClient client_;
    Appliance::Client appliance_;
};

void serve(const std::function<void(int)>& tell) {
    capnp::EzRpcServer server(kj::heap<Served>(), "127.0.0.1", 0);
    tell(static_cast<int>(server.getPort().wait(server.getWaitScope())));
    kj::NEVER_DONE.wait(server.getWaitScope());
}

} // namespace

int main() {
    return bench::peers::compare(
        {"Cap'n Proto", serve, [](int port) { return std::make_unique<CapnpClient>(port); }});
}
