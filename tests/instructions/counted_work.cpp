#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/object/multicall_queue.h>
#include <tests/support/fake_appliance.h>

/// Does one piece of work of the table bounds.txt, without a network, for count.sh to count its instructions.

using support::Bytes;

namespace {

/// What an appliance in memory has answered, to be played again: its own work shall not be counted.
struct Tape {
    support::FakeAppliance appliance;
    std::vector<Bytes> replies;
    std::size_t next = 0;
    bool records = true;

    const Bytes& reply(const TAVOX::OutputStream::Chunks& request) {
        if (records) {
            Bytes whole;
            for (const auto chunk : request)
                whole.insert(whole.end(), chunk.begin(), chunk.end());
            replies.push_back(appliance.answer(whole));
        }
        return replies.at(next++);
    }
};

class PlayedTransport final : public TAVO::Transport {
public:
    explicit PlayedTransport(Tape& tape)
        : tape_(tape) {}

    void send(const TAVOX::OutputStream::Chunks& request) override {
        reply_ = &tape_.reply(request);
        received_ = 0;
    }
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override {
        if (reply_->size() - received_ < length)
            throw std::out_of_range("more is received than was recorded");
        std::memcpy(buffer, reply_->data() + received_, static_cast<std::size_t>(length));
        received_ += static_cast<std::size_t>(length);
    }

private:
    Tape& tape_;
    const Bytes* reply_ = nullptr;
    std::size_t received_ = 0;
};

constexpr std::uint32_t objects = 200;
constexpr std::size_t callsOfBatch = 1000;

/// 200 relays, each tenth at the root and the others below it.
void addRelays(support::FakeAppliance& appliance) {
    support::addFixedObjects(appliance);
    constexpr std::uint32_t groupSize = 10, first = 16;
    Bytes roots = support::u32(objects / groupSize);
    for (std::uint32_t i = 0; i < objects; ++i) {
        const auto name = "relay" + std::to_string(i);
        appliance.add(first + i, "relay").method("get", support::result(0, Bytes{1}));
        if (i % groupSize == 0)
            roots = support::joined({roots, support::text(name), support::u32(first + i)});
        else
            appliance.object(first + i - i % groupSize).member(name, first + i);
    }
    appliance.object(0).method("rootMembers", support::result(0, roots));
}

std::shared_ptr<TAVO::Device> open(Tape& tape, bool byLevels) {
    return TAVO::DeviceFactory::buildDevice(std::make_unique<PlayedTransport>(tape), "engineer", "tavo",
                                            false, {.byLevels = byLevels});
}

void runBatch(TAVO::Device& device, const CommonModules::Relay_v1_0& relay) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    std::vector<std::shared_ptr<TAVO::BoundMethod<TAVO::dto::relay::GetReply>>> methods;
    methods.reserve(callsOfBatch);
    for (std::size_t i = 0; i < callsOfBatch; ++i) {
        methods.push_back(relay.getGetMethod());
        queue->add(methods.back());
    }
    device.multicall(queue);
    for (const auto& method : methods)
        if (method->take().state != 1)
            throw std::runtime_error("a relay is off");
}

using Work = std::function<void()>;

/// With the device on which it works, and the tape from the opening of the device on.
struct Works {
    Tape tape;
    std::shared_ptr<TAVO::Device> device;
    std::map<std::string, Work> all;

    Works() {
        addRelays(tape.appliance);
        device = open(tape, true);
        const auto relay = device->get<CommonModules::Relay_v1_0>("relay0");
        const auto call = relay->getGetMethod();
        all["single"] = [this, call] { device->call(call); };
        all["batch"] = [this, relay] { runBatch(*device, *relay); };
        all["opening"] = [this] { open(tape, false); };
        all["opening_by_levels"] = [this] { open(tape, true); };
    }
    ~Works() {
        play(true, [this] { device.reset(); });
    }
    Works(const Works&) = delete;
    Works& operator=(const Works&) = delete;

    void play(bool records, const Work& work) {
        tape.records = records;
        tape.next = 0;
        if (records)
            tape.replies.clear();
        work();
    }
};

} // namespace

/// Callgrind counts while this runs.
extern "C" [[gnu::noinline]] void countedWork(const Work& work) { work(); }

int main(int argc, char** argv) {
    TAVO::CoreObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    Works works;
    const auto found = works.all.find(argc > 1 ? argv[1] : "");
    if (found == works.all.end()) {
        std::fprintf(stderr, "usage: %s WORK, one of\n", argv[0]);
        for (const auto& [name, work] : works.all)
            std::fprintf(stderr, "  %s\n", name.c_str());
        return 2;
    }
    works.play(true, found->second);
    for (int i = 0; i < 2; ++i)
        works.play(false, found->second); // fills the memory that later work takes again
    works.play(false, [&] { countedWork(found->second); });
}
