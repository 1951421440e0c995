#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <tavo/cli/session.h>

namespace TAVO::cli {

/// The object that a command works on: the one of that full name, or the only suitable one of the device when
/// the name is empty.
/// @param kind what a suitable object is called in messages.
/// @throws Failure (not found) when the named one is not suitable, or when none or several are; it lists
/// them.
std::shared_ptr<Object_v1_0> chooseObject(Session& session, const std::string& fullName, const char* kind,
                                          const std::function<bool(const Object_v1_0&)>& suits);

/// The same for objects of one of the classes; the result has the class when there is just one.
template <class Proxy, class... Others>
auto chooseObject(Session& session, const std::string& fullName, const char* kind) {
    const auto suits = [](const Object_v1_0& object) {
        return dynamic_cast<const Proxy*>(&object) || (... || dynamic_cast<const Others*>(&object));
    };
    const auto object = chooseObject(session, fullName, kind, suits);
    using Result = std::conditional_t<sizeof...(Others) == 0, Proxy, Object_v1_0>;
    return std::dynamic_pointer_cast<Result>(object);
}

/// Whether the device lists the method and the client knows its records.
bool offers(const Object_v1_0& object, std::string_view method);
/// @throws Failure (not found) otherwise.
void requireOffer(const Object_v1_0& object, std::string_view method);

/// A call as Object_v1_0::make builds it, for methods that not every suitable object has.
/// @throws Failure (not found) when the object does not offer it.
template <class Request, class Reply, class... Arguments>
auto callOf(const Object_v1_0& object, const TAVOXTranscode::Call<Request, Reply>& call,
            Arguments&&... arguments) {
    requireOffer(object, call.name);
    return object.make(call, std::forward<Arguments>(arguments)...);
}

} // namespace TAVO::cli
