#pragma once

#include <memory>
#include <utility>

namespace TAVO::python {

/// A method as Python is to have it, of a class that shared_ptr holds: pybind11 would call a pointer to it
/// also with an object that Python code made by __new__() alone, which has no content.
template <class Class, class Result, class... Arguments>
auto checked(Result (Class::*method)(Arguments...)) {
    return [method](const std::shared_ptr<Class>& self, Arguments... arguments) -> Result {
        return ((*self).*method)(std::forward<Arguments>(arguments)...);
    };
}
template <class Class, class Result, class... Arguments>
auto checked(Result (Class::*method)(Arguments...) const) {
    return [method](const std::shared_ptr<Class>& self, Arguments... arguments) -> Result {
        return ((*self).*method)(std::forward<Arguments>(arguments)...);
    };
}

} // namespace TAVO::python
