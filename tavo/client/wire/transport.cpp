#include <tavo/client/wire/transport.h>

namespace TAVO {

Transport::~Transport() = default;

const std::uint8_t* Transport::receiveInPlace(std::uint64_t) { return nullptr; }

} // namespace TAVO
