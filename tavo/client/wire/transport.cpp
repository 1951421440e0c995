#include <tavo/client/wire/transport.h>

namespace TAVO {

Transport::~Transport() = default;

} // namespace TAVO
