#include <tests/fuzz/request_script.h>

#include <tavo/client.h>
#include <tavo/client/wire/byte_order.h>

namespace fuzz {

namespace {

void append(Bytes& bytes, std::uint32_t number) {
    bytes.resize(bytes.size() + sizeof number);
    TAVOX::storeBigEndian(bytes.data() + bytes.size() - sizeof number, number);
}

void appendCall(Bytes& bytes, Input& script, const std::vector<ListedMethod>& methods) {
    const auto& method = methods[script.word() % methods.size()];
    const auto parameters = script.block();
    append(bytes, method.instanceId);
    append(bytes, method.methodId);
    append(bytes, static_cast<std::uint32_t>(parameters.size()));
    bytes.insert(bytes.end(), parameters.begin(), parameters.end());
}

std::uint32_t chosenLockId(Input& script, std::uint32_t lockId) {
    switch (script.byte() % RequestScript::lockIdCount) {
    case RequestScript::none:
        return 0;
    case RequestScript::holders:
        return lockId;
    default:
        return lockId + 1;
    }
}

} // namespace

std::vector<ListedMethod> listMethods(MemoryAppliance& appliance) {
    std::vector<ListedMethod> all;
    AppliancePeer peer(appliance);
    const auto device = std::make_shared<MemoryDevice>(peer);
    namespace base = TAVO::TAVOXTranscode::base_v1_0;
    for (const auto& [id, simulated] : appliance.appliance().objects()) {
        const TAVO::Object_v1_0 object(device, simulated->fullName(), id, nullptr, base::encoders(),
                                       base::decoders());
        const auto type = object.type();
        const std::string version = object.version();
        for (const auto& method : object.methods())
            all.push_back({id, method.id, type, version, method.name});
    }
    return all;
}

Bytes nextBytes(Input& script, const std::vector<ListedMethod>& methods, std::uint32_t lockId) {
    Bytes bytes;
    const auto step = script.byte() % RequestScript::stepCount;
    if (step == RequestScript::raw) {
        const auto block = script.block();
        return {block.begin(), block.end()};
    }
    append(bytes, chosenLockId(script, lockId));
    const std::uint32_t count = step == RequestScript::call ? 1 : script.byte();
    append(bytes, count);
    for (std::uint32_t i = 0; i < count; ++i)
        appendCall(bytes, script, methods);
    return bytes;
}

} // namespace fuzz
