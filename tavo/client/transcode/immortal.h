#pragma once

#include <cstddef>
#include <new>

namespace TAVO {

/// Holds the one `T` of the program: made at its first use or when the library is loaded, whichever comes
/// first, and never destroyed. So initialisers of globals may use it, and so may code that runs after main.
template <class T>
class Immortal {
public:
    /// The object, made now if it is not there yet. Any thread may ask for it.
    static T& object() {
        static_cast<void>(madeAtLoad_); // a static member that nobody mentions is never initialised
        alignas(T) static std::byte storage[sizeof(T)];
        static T* const made = ::new (storage) T();
        return *made;
    }

private:
    static const bool madeAtLoad_;
};

template <class T>
const bool Immortal<T>::madeAtLoad_ = (static_cast<void>(object()), true);

/// The one `T` of the program; see Immortal.
///
/// @code
/// const auto& encoders = TAVO::immortal<const LampEncoders>();
/// @endcode
template <class T>
T& immortal() {
    return Immortal<T>::object();
}

} // namespace TAVO
