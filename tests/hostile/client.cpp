#include <tests/hostile/client.h>

#include <algorithm>
#include <memory>
#include <new>
#include <typeinfo>

#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/wire/error.h>
#include <tests/hostile/reply_model.h>

namespace hostile {

namespace {

using Methods = std::vector<std::shared_ptr<TAVO::Method>>;

std::string nameOf(const std::exception& failure) {
    const auto& type = typeid(failure);
    if (type == typeid(TAVO::NetworkError))
        return "NetworkError";
    if (type == typeid(TAVO::SpecificationError))
        return "SpecificationError";
    if (type == typeid(TAVO::ExecutionError))
        return "ExecutionError";
    if (type == typeid(TAVO::TAVOKeyError))
        return "TAVOKeyError";
    if (type == typeid(TAVO::Error))
        return "Error";
    return type.name();
}

std::string stepText(const std::string& name, const std::string& outcome, const Methods& methods) {
    const auto set = std::count_if(methods.begin(), methods.end(),
                                   [](const auto& method) { return method->isResultSet(); });
    return name + ": " + outcome + ", " + std::to_string(set) + " results";
}

std::string executed(TAVO::Device& device, const std::string& name, const Methods& methods) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    for (const auto& method : methods)
        queue->add(method);
    const auto outcome = outcomeOf([&] { device.multicall(queue); });
    return stepText(name, outcome, methods);
}

std::string step(TAVO::Device& device, std::size_t place) {
    const auto uart = std::dynamic_pointer_cast<CommonModules::Com_v1_0>(device.getChild("uart"));
    switch (place) {
    case batchPlace:
        return executed(device, "batch",
                        {uart->getOpenMethod(115200, 8, true, false, 1, false, false, false, false),
                         uart->getReserveMethod("ann", "pc"), uart->getRecvMethod(96),
                         uart->getAvailableMethod(), uart->getCloseMethod()});
    case faultyPlace:
        return executed(device, "faulty",
                        {uart->getRecvMethod(2), uart->getAvailableMethod(), uart->getCloseMethod()});
    default: {
        const auto info = device.getDevice()->getInfoMethod();
        const auto outcome = outcomeOf([&] { device.call(info); });
        return stepText("info", outcome, {info});
    }
    }
}

std::string tryAgain(TAVO::Device& device) {
    for (std::size_t unexpected = 0;; ++unexpected) {
        const auto outcome = outcomeOf([&] { device.getDevice()->type(); });
        if (outcome != unexpectedData)
            return "again: " + std::to_string(unexpected) + " unexpected, " + outcome;
    }
}

} // namespace

std::string outcomeOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& failure) {
        return describe(nameOf(failure), failure.what());
    }
    return "ok";
}

std::vector<std::string> converse(int port, std::size_t troubledPlace) {
    TAVO::CoreObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    std::vector<std::string> events;
    std::shared_ptr<TAVO::Device> device;
    events.push_back("open: " + outcomeOf([&] {
                         device = TAVO::DeviceFactory::buildDevice("127.0.0.1", port, "ann", "pw", true);
                     }));
    if (!device)
        return events;
    for (auto place = lastOfOpening; place < unlockPlace; ++place) {
        if (place > lastOfOpening)
            events.push_back(step(*device, place));
        if (place >= troubledPlace) {
            events.push_back(tryAgain(*device));
            break;
        }
    }
    return events;
}

} // namespace hostile
