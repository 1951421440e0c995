#include <tests/support/shut_down_hook.h>

#include <utility>

#include <tavo/client/wire/internal/socket.h>

// The linker leads the library's calls of shutDown() here (--wrap), where the library is static.

namespace {

std::function<void()> hookInUse;

} // namespace

void realShutDown(TAVO::sockets::Handle socket) noexcept asm("__real_" TAVO_SHUT_DOWN_SYMBOL);
void wrappedShutDown(TAVO::sockets::Handle socket) noexcept asm("__wrap_" TAVO_SHUT_DOWN_SYMBOL);

void wrappedShutDown(TAVO::sockets::Handle socket) noexcept {
    if (hookInUse)
        hookInUse();
    realShutDown(socket);
}

namespace support {

ShutDownHook::ShutDownHook(std::function<void()> hook) { hookInUse = std::move(hook); }
ShutDownHook::~ShutDownHook() { hookInUse = nullptr; }

} // namespace support
