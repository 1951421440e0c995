#include <tavo/cli/object_choice.h>

#include <tavo/cli/values/name_list.h>

namespace TAVO::cli {

std::shared_ptr<Object_v1_0> chooseObject(Session& session, const std::string& fullName, const char* kind,
                                          const std::function<bool(const Object_v1_0&)>& suits) {
    if (!fullName.empty()) {
        auto named = session.findOnly(fullName);
        if (!suits(*named))
            throw Failure(ExitCode::notFound, fmt::format("'{}' is no {}", fullName, kind));
        return named;
    }
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
