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

/// The one with that full name, which must not be empty to find any.
/// @throws Failure (not found) as above.
std::shared_ptr<Object_v1_0> namedObject(Session& session, const std::string& fullName, const char* kind,
                                         const std::function<bool(const Object_v1_0&)>& suits);

/// "there are: a, b", or that there are none. Opens the whole device: keep no object of it.
std::string candidatesText(Session& session, const std::function<bool(const Object_v1_0&)>& suits);

template <class... Proxies>
bool isOneOf(const Object_v1_0& object) {
    return (... || (dynamic_cast<const Proxies*>(&object) != nullptr));
}

/// The same for objects of any of these classes. The result has the class if there is only one.
template <class Proxy, class... Others>
auto chooseObject(Session& session, const std::string& fullName, const char* kind) {
    const auto object = chooseObject(session, fullName, kind, isOneOf<Proxy, Others...>);
    using Result = std::conditional_t<sizeof...(Others) == 0, Proxy, Object_v1_0>;
    return std::dynamic_pointer_cast<Result>(object);
}

template <class Proxy>
std::shared_ptr<Proxy> namedObject(Session& session, const std::string& fullName, const char* kind) {
    return std::dynamic_pointer_cast<Proxy>(namedObject(session, fullName, kind, isOneOf<Proxy>));
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
