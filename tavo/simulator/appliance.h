#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tavo/simulator/clock.h>
#include <tavo/simulator/export.h>
#include <tavo/simulator/firmware_store.h>
#include <tavo/simulator/lock.h>
#include <tavo/simulator/models/board.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// The state of a simulated appliance: its objects, lock, clock and firmware. Knows nothing of connections.
///
/// Not synchronised: the Simulator that serves it guards it, see Simulator::inspect().
class TAVO_SIMULATOR_API Appliance {
public:
    /// Has the objects "device", "system" and "private", and no root members.
    /// @param accounts user names and passwords. @param key what "getKey" answers.
    Appliance(std::map<std::string, std::string> accounts, std::vector<std::uint8_t> key);
    ~Appliance();
    Appliance(const Appliance&) = delete;
    Appliance& operator=(const Appliance&) = delete;

    /// Makes an object and adds it to the root members.
    /// @throws as SimulatedObject::add.
    template <class Object, class... Arguments>
    Object& add(const std::string& name, Arguments&&... arguments) {
        return root_->add<Object>(name, std::forward<Arguments>(arguments)...);
    }
    /// Adds an existing object to the root members. @throws as SimulatedObject::add.
    SimulatedObject& add(const std::string& name, std::unique_ptr<SimulatedObject> object) {
        return root_->add(name, std::move(object));
    }
    const std::vector<std::unique_ptr<SimulatedObject>>& rootMembers() const { return root_->members(); }

    /// The object with this instance id, or null.
    SimulatedObject* find(std::uint32_t instanceId) const;
    /// The object with this full name ("device", "bench.lamp"), or null.
    SimulatedObject* find(std::string_view fullName) const;
    /// The object with this full name, as the class that models it.
    /// @throws std::out_of_range if there is no object with this name and class.
    template <class Object = SimulatedObject>
    Object& get(std::string_view fullName) const {
        if (auto* object = dynamic_cast<Object*>(find(fullName)))
            return *object;
        throw std::out_of_range("no such simulated object: " + std::string(fullName));
    }
    /// All objects by instance id.
    const std::map<std::uint32_t, SimulatedObject*>& objects() const { return objects_; }

    Lock& lock() { return lock_; }
    Clock& clock() { return clock_; }
    /// Simulated microseconds since the appliance was made, as its models see them: includes the delays of
    /// the request being served.
    std::int64_t now() const;
    /// The target board that all models share. Off until a relay or a test switches it on.
    const std::shared_ptr<Board>& board() const { return board_; }
    FirmwareStore& firmware() { return firmware_; }
    /// What "getKey" answers. Any length.
    const std::vector<std::uint8_t>& key() const { return key_; }
    void setKey(std::vector<std::uint8_t> key) { key_ = std::move(key); }

    /// Returns to the state after power-on: drops lock and reservations and resets every object. Keeps clock
    /// and firmware.
    void reset();

private:
    friend class SimulatedObject;
    friend class CallContext;
    void addFixed(const std::string& name, std::uint32_t instanceId, std::unique_ptr<SimulatedObject> object);
    void enter(SimulatedObject& object);

    Lock lock_;
    Clock clock_;
    FirmwareStore firmware_;
    const CallContext* served_ = nullptr;
    std::shared_ptr<Board> board_;
    std::vector<std::uint8_t> key_;
    std::unique_ptr<SimulatedObject> root_;
    std::vector<std::unique_ptr<SimulatedObject>> fixed_;
    std::map<std::uint32_t, SimulatedObject*> objects_;
};

} // namespace TAVO::simulator
