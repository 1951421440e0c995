// Calls any method of any object by name, with arguments and results as data.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client.h>

namespace {

using TAVO::Object_v1_0;
using TAVO::Value;

std::string inWords(const std::vector<TAVO::FieldDescription>& fields) {
    std::string text;
    for (const auto& field : fields)
        text += (text.empty() ? "" : ", ") + field.name + ": " + field.type;
    return text;
}

// Prints the methods that the device lists for an object, with parameters and results.
void printMethods(const Object_v1_0& object) {
    for (const auto& method : object.methods()) {
        const auto& row = TAVO::describeMethod(object, method.name);
        std::cout << "  " << method.name << '(' << (row.request ? inWords(row.request->fields()) : "") << ')'
                  << (row.reply ? " -> " + inWords(row.reply->fields()) : "") << '\n';
    }
}

// Returns the reply as data; an empty record if the method has no reply.
Value callByName(TAVO::Device& device, const Object_v1_0& object, const std::string& name,
                 const Value::Record& arguments) {
    const auto& row = TAVO::describeMethod(object, name);
    TAVO::dto::Params params;
    if (row.request) {
        params.request = row.request->create();
        // Throws std::invalid_argument, which names a field that is wrong.
        row.request->fromValue(Value(arguments), *params.request);
    }
    const auto method = std::make_shared<TAVO::Method>(name, object, params);
    device.call(method);
    if (method->returnCode() != 0)
        throw std::runtime_error(method->getFullName() + " returned " + std::to_string(method->returnCode()));
    return row.reply ? row.reply->toValue(*method->getResult().reply) : Value(Value::Record());
}

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);
    const auto power = device->get<Object_v1_0>("power");

    std::cout << "The methods of " << power->getFullName() << ":\n";
    printMethods(*power);

    callByName(*device, *power, "set", {{"state", Value(true)}});
    std::cout << "get: " << callByName(*device, *power, "get", {}).toString() << '\n';

    const auto version = callByName(*device, *device->getDevice(), "version", {});
    std::cout << "version of the device object: " << version.toString() << '\n';
    if (const auto* parts = version.find("version"))
        std::cout << "its major part: " << parts->find("major")->toString() << '\n';

    try {
        callByName(*device, *power, "toggle", {{"value", Value(std::string("often"))}});
    } catch (const std::invalid_argument& refusal) {
        std::cout << "toggle: " << refusal.what() << '\n';
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " HOST PORT\n";
        return 2;
    }
    try {
        run(argv[1], std::stoi(argv[2]));
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
