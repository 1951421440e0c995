#pragma once

#include <fcntl.h>

namespace TAVO::simulator {

/// Keeps a descriptor from the programs that this process starts: in them, a port would stay open for good.
inline void closeOnExec(int descriptor) { ::fcntl(descriptor, F_SETFD, FD_CLOEXEC); }

} // namespace TAVO::simulator
