#include <tavo/client/object/bound_method.h>

#include <iostream>
#include <utility>

#include <tavo/client/object/object.h>

namespace TAVO {

namespace {

std::string joined(const std::string& path, const std::string& name) {
    std::string full;
    full.reserve(path.size() + Container::SEPARATOR.size() + name.size());
    return full.append(path).append(Container::SEPARATOR).append(name);
}

} // namespace

Method::Method(const std::string& name, const Container& container, const dto::Params& params)
    : Method(name, container, dynamic_cast<const Object_v1_0*>(&container), params) {}

Method::Method(const std::string& name, const Object_v1_0& object, const dto::Params& params)
    : Method(name, object, &object, params) {}

Method::Method(const std::string& name, const Container& container, const Object_v1_0* object,
               const dto::Params& params)
    : container_(container)
    , name_(name)
    , fullName_(joined(container.fullName_, name))
    , params_(params)
    , object_(object) {
    if (!object_)
        return;
    const auto remote = object_->remoteMethod(name);
    id_ = remote.id;
    encoder_ = remote.encoder;
    decoder_ = remote.decoder;
}

void Method::clearResult() {
    result_ = {};
    resultSet_ = false;
}

void Method::setResult(const dto::result& outcome) { setResult(dto::result(outcome)); }

void Method::setResult(dto::result&& outcome) {
    result_ = std::move(outcome);
    resultSet_ = true;
}

void reportNotExecuted(const Method& method) {
    std::cerr << "Method " << method.getFullName() << " has not been executed.  Can't return valid results"
              << std::endl;
}

} // namespace TAVO
