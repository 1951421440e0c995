#include <tavo/cli/object_choice.h>

#include <tavo/cli/values/name_list.h>

namespace TAVO::cli {

std::string candidatesText(Session& session, const std::function<bool(const Object_v1_0&)>& suits) {
    NameList candidates;
    for (const auto& object : session.allObjects())
        if (suits(*object))
            candidates.add(object->getFullName());
    return candidates.count() == 0 ? "the device has none" : "there are: " + candidates.text();
}

std::shared_ptr<Object_v1_0> namedObject(Session& session, const std::string& fullName, const char* kind,
                                         const std::function<bool(const Object_v1_0&)>& suits) {
    auto named = session.findOnly(fullName);
    if (suits(*named))
        return named;
    named.reset(); // else the device could not be opened anew
    throw Failure(ExitCode::notFound,
                  fmt::format("'{}' is no {}; {}", fullName, kind, candidatesText(session, suits)));
}

std::shared_ptr<Object_v1_0> chooseObject(Session& session, const std::string& fullName, const char* kind,
                                          const std::function<bool(const Object_v1_0&)>& suits) {
    if (!fullName.empty())
        return namedObject(session, fullName, kind, suits);
    std::shared_ptr<Object_v1_0> chosen;
    NameList candidates;
    for (const auto& object : session.objects())
        if (suits(*object)) {
            candidates.add(object->getFullName());
            chosen = object;
        }
    if (!chosen)
        throw Failure(ExitCode::notFound, fmt::format("the device has no {}", kind));
    if (candidates.count() > 1)
        throw Failure(ExitCode::notFound,
                      fmt::format("which {}? --object NAME chooses one of: {}", kind, candidates.text()));
    return chosen;
}

bool offers(const Object_v1_0& object, std::string_view method) {
    return object.findFunctions(method).encoder && object.hasMethod(std::string(method));
}

void requireOffer(const Object_v1_0& object, std::string_view method) {
    if (!offers(object, method))
        throw Failure(ExitCode::notFound, fmt::format("{} has no method '{}'", object.getFullName(), method));
}

} // namespace TAVO::cli
