#pragma once

namespace TAVO::simulator {

/// Registers the client library's types, from which simulated objects take their methods.
void registerLibraryTypes();

} // namespace TAVO::simulator
