#pragma once

#include <string>
#include <utility>
#include <vector>

#include <tests/hostile/conversation.h>

/// What conversations are made of.
namespace hostile::parts {

// Instance ids, and on each object the ids of its methods.
enum Instance : std::uint32_t { device = 0, system = 1, private_ = 2, uart = 5 };
enum MethodId : std::uint32_t {
    methods = 3,
    type = 0x11,
    version = 0x12,
    members = 0x13,
    rootMembers = 0x14,
    lock = 0x15,
    unlock = 0x16,
    getKey = 0x17,
    info = 0x18,
    login = 0x19,
    open = 0x21,
    close = 0x22,
    recv = 0x23,
    reserve = 0x24,
    available = 0x25,
    headerConnectGet = 0x31,
    headerStatusGet = 0x32,
    fifoGet = 0x33,
    fifoClear = 0x34
};

using Names = std::vector<std::pair<std::string, std::uint32_t>>;

Bytes callOf(std::uint32_t instance, std::uint32_t method, const Bytes& parameters = {});
Bytes requestOf(std::uint32_t heldLock, std::initializer_list<Bytes> calls);
/// An exchange of one call.
Exchange single(std::uint32_t heldLock, std::uint32_t instance, std::uint32_t method, const Call& call,
                const Layout& content, const Bytes& parameters = {});
Bytes credentials();

/// An object as a device describes it.
struct Described {
    std::uint32_t instance = 0;
    /// Its full name.
    std::string name;
    std::string type;
    /// Methods beside those that every object has here: type, version and members.
    Names methods = {};
    Names children = {};
    /// A type that is served in any version, or in none, is not asked for it.
    bool asksVersion = true;
    WithoutNames withoutChildren = {};
};

/// What building one object takes.
std::vector<Exchange> building(std::uint32_t heldLock, const Described& object);

/// An opening up to the list of the root members.
/// @param methods of the device, beside those that an opening needs.
std::vector<Exchange> opening(const Names& methods, const Names& root);
Exchange unlocking();

inline void append(std::vector<Exchange>& all, const std::vector<Exchange>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

} // namespace hostile::parts
