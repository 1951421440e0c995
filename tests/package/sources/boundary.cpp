// What the library throws and makes must be what the application knows under the same name.
#include <array>
#include <cstdint>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>

#include <tavo/client.h>

namespace {

bool catchesWhatTheLibraryThrows() {
    try {
        TAVO::Version version("not a version");
    } catch (const TAVO::SpecificationError&) {
        try {
            TAVO::DeviceFactory::buildDevice("127.0.0.1", 1, "user", "secret", false);
        } catch (const TAVO::NetworkError& error) {
            return dynamic_cast<const TAVO::Error*>(static_cast<const std::exception*>(&error)) != nullptr;
        }
    }
    return false;
}

bool knowsRecordsMadeByTheLibrary() {
    namespace relay = CommonModules::TAVOXTranscode::relay_v1_0;
    const std::array<std::uint8_t, 5> reply = {0, 0, 0, 7, 1};
    TAVOX::InputStream in(reply.data(), reply.size());
    const auto outcome = relay::DecoderList().at("get")(in);
    const auto* state = dynamic_cast<const TAVO::dto::relay::GetReply*>(outcome.reply.get());
    return outcome.code == 7 && state && state->state == 1 &&
           typeid(*outcome.reply) == typeid(TAVO::dto::relay::GetReply);
}

bool libraryKnowsRecordsMadeHere() {
    namespace relay = CommonModules::TAVOXTranscode::relay_v1_0;
    auto request = std::make_shared<TAVO::dto::relay::SetRequest>();
    request->state = true;
    TAVOX::OutputStream out;
    relay::EncoderList().at("set")(out, TAVO::dto::Params{request});
    return !out.failed() && out.chunks()[0].size() == 1 && out.chunks()[0][0] == 1;
}

} // namespace

int main() {
    if (TAVO::ClientLibraryVersion.empty() || TAVO::serverKeys().size() != 4) {
        std::cerr << "constants are missing\n";
        return 1;
    }
    if (!catchesWhatTheLibraryThrows()) {
        std::cerr << "an exception lost its type\n";
        return 1;
    }
    if (!knowsRecordsMadeByTheLibrary() || !libraryKnowsRecordsMadeHere()) {
        std::cerr << "a record lost its type\n";
        return 1;
    }
    return 0;
}
