#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <tavo/cli/option_list.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

/// The names of that kind. Names of the configuration file and of the simulator need no device.
/// @param begun how the wanted names begin.
/// @param objects gives the objects of the device; called only where they are needed.
std::vector<std::string> completedNames(NameKind kind, const std::string& begun,
                                        const std::function<Objects()>& objects);

/// The objects of a device, as the share at this path describes them, without the lock of the device and
/// without a connection to it. None if there is no share, or if it takes longer.
/// @param path may be empty.
Objects objectsOfShare(const std::string& path, std::chrono::milliseconds longest);

} // namespace TAVO::cli
