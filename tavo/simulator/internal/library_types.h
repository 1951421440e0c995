#pragma once

namespace TAVO::simulator {

/// Makes the client library's types known to findObjectTable() and methodRows(): simulated objects take their
/// methods from there.
void registerLibraryTypes();

} // namespace TAVO::simulator
