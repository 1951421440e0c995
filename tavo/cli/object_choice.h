#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <tavo/cli/session.h>

namespace TAVO::cli {

/// The object a command works on: the one with that full name or, if the name is empty, the only one on the
/// device that fits.
/// @param kind what messages call such an object.
/// @throws Failure (not found) if the named object does not fit, or if none or several do; the message lists
///         them.
std::shared_ptr<Object_v1_0> chooseObject(Session& session, const std::string& fullName, const char* kind,
                                          const std::function<bool(const Object_v1_0&)>& suits);

/// The same for objects of any of these classes. The result has the class if there is only one.
template <class Proxy, class... Others>
auto chooseObject(Session& session, const std::string& fullName, const char* kind) {
    const auto suits = [](const Object_v1_0& object) {
        return dynamic_cast<const Proxy*>(&object) || (... || dynamic_cast<const Others*>(&object));
    };
    const auto object = chooseObject(session, fullName, kind, suits);
    using Result = std::conditional_t<sizeof...(Others) == 0, Proxy, Object_v1_0>;
    return std::dynamic_pointer_cast<Result>(object);
}

/// Whether the device lists the method and this client knows its records.
bool offers(const Object_v1_0& object, std::string_view method);
/// @throws Failure (not found) otherwise.
void requireOffer(const Object_v1_0& object, std::string_view method);

/// Builds a call like Object_v1_0::make, for methods that not every such object has.
/// @throws Failure (not found) if the object does not offer it.
template <class Request, class Reply, class... Arguments>
auto callOf(const Object_v1_0& object, const TAVOXTranscode::Call<Request, Reply>& call,
            Arguments&&... arguments) {
    requireOffer(object, call.name);
    return object.make(call, std::forward<Arguments>(arguments)...);
}

} // namespace TAVO::cli
