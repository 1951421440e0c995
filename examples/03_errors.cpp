// Provokes failures and shows what is known about each and how to go on.
#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include <tavo/client.h>

namespace {

using TAVO::DeviceFactory;

// The base class comes last: every error is a TAVO::Error.
void explain(const char* attempt, const std::function<void()>& action) {
    std::cout << attempt << ":\n  ";
    try {
        action();
        std::cout << "done\n";
    } catch (const TAVO::LockError& error) {
        std::cout << "in use by " << error.lockingUser() << '\n';
    } catch (const TAVO::ExecutionError& error) {
        std::cout << "call " << error.failedMethodIndex() << " of the batch failed: " << error.what() << '\n';
    } catch (const TAVO::TAVOLoginError& error) {
        std::cout << "not admitted: " << error.what() << '\n';
    } catch (const TAVO::NetworkError& error) {
        std::cout << "no connection: " << error.what() << '\n';
    } catch (const TAVO::Error& error) {
        std::cout << "error: " << error.what() << '\n';
    }
}

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();

    explain("Connect to a port where nothing listens",
            [&] { DeviceFactory::buildDevice("127.0.0.1", 1, "engineer", "tavo", false); });
    explain("Open with a wrong password",
            [&] { DeviceFactory::buildDevice(host, port, "engineer", "wrong", false); });

    const auto device = DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);
    const auto openAsGuest = [&] { DeviceFactory::buildDevice(host, port, "guest", "tavo", false); };
    explain("Open a device that somebody holds", openAsGuest);

    // Connection and tree survive an unlock: let another user in, then take the lock back.
    device->unlock();
    explain("Open it after unlock()", openAsGuest);
    explain("Take the lock back", [&] { device->relock(); });

    explain("Prepare a call that the device does not offer",
            [&] { TAVO::Method("defrost", *device->getSystem(), {}); });

    explain("Ask about a firmware that the device does not have",
            [&] { device->call(device->getSystem()->getFirmwareStatusMethod("toaster")); });

    // Not every failure is an exception: each method has its own return code, 0 for success.
    const auto sleep =
        device->getSystem()->getUSleepMethod(-1); // the device judges the values, not the library
    std::cout << "Sleep for less than no time:\n  return code " << sleep->returnCode()
              << " before the call\n";
    device->call(sleep);
    std::cout << "  return code " << sleep->returnCode() << " after it\n";
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
