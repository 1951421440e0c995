#pragma once

#include <string>
#include <vector>

/// The calls by which a device is opened, as a fake appliance records them.
namespace opening {

using Names = std::vector<std::string>;

inline Names operator+(Names first, const Names& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

inline const Names buildsDevice{"0.methods", "0.type", "0.version", "0.methods", "0.members"};
inline const Names checksKey{"0.getKey"};
inline const Names locks{"0.lock"};
inline const Names unlocks{"0.unlock"};

} // namespace opening
