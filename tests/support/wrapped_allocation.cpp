#include <tests/support/allocation_account.h>

// The linker leads the calls of realloc and free that are linked into the program here (--wrap). What the
// meter's `new` has taken comes here too when it is given back.

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names.
extern "C" {

void* __real_realloc(void* memory, std::size_t size);
void __real_free(void* memory);
void* __wrap_realloc(void* memory, std::size_t size);
void __wrap_free(void* memory);

void* __wrap_realloc(void* memory, std::size_t size) {
    support::taken.note(size);
    ++support::taken.reallocations;
    if (support::isRefused())
        return nullptr;
    support::held.remove(memory);
    void* moved = __real_realloc(memory, size);
    support::held.add(moved ? moved : memory);
    return moved;
}

void __wrap_free(void* memory) {
    support::held.remove(memory);
    __real_free(memory);
}
}
// NOLINTEND(bugprone-reserved-identifier)
