#pragma once

#include <functional>
#include <memory>
#include <string>
#include <type_traits>

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
bool offers(const Object_v1_0& object, const std::string& method);
/// @throws Failure (not found) otherwise.
void requireOffer(const Object_v1_0& object, const std::string& method);

/// A call by name, for methods that no operation of a proxy makes.
/// @throws Failure (not found) when the object does not offer it.
std::shared_ptr<Method> callOf(const Object_v1_0& object, const std::string& method,
                               const dto::Params& params = {});
template <class Result>
std::shared_ptr<BoundMethod<Result>> callOf(const Object_v1_0& object, const std::string& method,
                                            const dto::Params& params = {}) {
    requireOffer(object, method);
    return std::make_shared<BoundMethod<Result>>(method, object, params);
}

} // namespace TAVO::cli
