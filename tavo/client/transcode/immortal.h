#pragma once

#include <cstddef>
#include <new>

namespace TAVO {

/// Holds the one object of its type that the library keeps for the whole program: made by the first use or
/// when the library is loaded, whichever comes first, and never destroyed. So it is there for initialisers of
/// globals and for whatever runs after main.
template <class T>
class Immortal {
public:
    static T& object() {
        static_cast<void>(madeAtLoad_); // what nobody mentions is not initialised at all
        alignas(T) static std::byte storage[sizeof(T)];
        static T* const made = ::new (storage) T();
        return *made;
    }

private:
    static const bool madeAtLoad_;
};

template <class T>
const bool Immortal<T>::madeAtLoad_ = (static_cast<void>(object()), true);

/// The library's own T. Any thread may ask for it.
template <class T>
T& immortal() {
    return Immortal<T>::object();
}

} // namespace TAVO
