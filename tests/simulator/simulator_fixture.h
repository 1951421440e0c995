#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <tavo/client.h>
#include <tavo/simulator/return_codes.h>
#include <tavo/simulator/simulator.h>
#include <tests/simulator/raw_client.h>
#include <tests/support/all_types.h>
#include <tests/support/soon.h>

/// A simulator on a free port, and the client library at its other end.
class SimulatorFixture : public ::testing::Test {
protected:
    using Appliance = TAVO::simulator::Appliance;

    explicit SimulatorFixture(TAVO::simulator::Options options = {})
        : simulator(std::move(options)) {
        support::registerAllTypes();
        simulator.start();
    }

    std::shared_ptr<TAVO::Device> open(const std::string& user = "engineer",
                                       const std::string& password = "tavo") {
        return TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), user, password, true);
    }

    /// The device with its object "device" alone, unlocked.
    std::shared_ptr<TAVO::Device> query() {
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        return TAVO::DeviceFactory::queryDevice("127.0.0.1", simulator.port(), descriptor);
    }

    /// The object of that full name.
    template <class Object = TAVO::Object_v1_0>
    static std::shared_ptr<Object> object(const std::shared_ptr<TAVO::Device>& device,
                                          const std::string& fullName) {
        std::shared_ptr<TAVO::Container> found = device;
        for (std::size_t begin = 0; begin != std::string::npos;) {
            const auto end = fullName.find('.', begin);
            found = found->getChild(fullName.substr(begin, end == std::string::npos ? end : end - begin));
            begin = end == std::string::npos ? end : end + 1;
        }
        auto object = std::dynamic_pointer_cast<Object>(found);
        if (!object)
            throw std::runtime_error("no such object: " + fullName);
        return object;
    }

    template <class Method>
    static std::shared_ptr<Method> called(const std::shared_ptr<TAVO::Device>& device,
                                          std::shared_ptr<Method> method) {
        device->call(method);
        return method;
    }

    std::uint32_t instanceId(const std::string& name) {
        return simulator.inspect([&](Appliance& appliance) { return appliance.get(name).instanceId(); });
    }
    std::uint32_t methodId(const std::string& name, const std::string& method) {
        return simulator.inspect([&](Appliance& appliance) { return appliance.get(name).methodId(method); });
    }
    /// The bytes of a call by names.
    support::Bytes call(const std::string& name, const std::string& method,
                        const support::Bytes& parameters = {}) {
        return support::callBytes(instanceId(name), methodId(name, method), parameters);
    }

    void freeze() {
        simulator.inspect([](Appliance& appliance) { appliance.clock().freeze(); });
    }
    void pass(std::chrono::microseconds time) {
        simulator.inspect([time](Appliance& appliance) { appliance.clock().advance(time); });
    }

    template <class Condition>
    static bool soon(Condition condition) {
        return support::soon(condition);
    }

    TAVO::simulator::Simulator simulator;
};

/// The same with an open device.
class DeviceFixture : public SimulatorFixture {
protected:
    using SimulatorFixture::SimulatorFixture;

    void power(bool on) {
        simulator.inspect([on](Appliance& appliance) { appliance.board()->setPower(on); });
    }
    int codeOf(const std::shared_ptr<TAVO::Method>& method) { return called(device, method)->returnCode(); }
    void done(const std::shared_ptr<TAVO::Method>& method) {
        EXPECT_EQ(codeOf(method), TAVO::simulator::return_code::done);
    }
    template <class Result>
    Result read(const std::shared_ptr<TAVO::BoundMethod<Result>>& method) {
        done(method);
        return method->value();
    }

    std::shared_ptr<TAVO::Device> device = open();
};
