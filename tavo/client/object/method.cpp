#include <tavo/client/object/bound_method.h>

#include <utility>

#include <tavo/client/object/internal/name_path.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/internal/error_line.h>

namespace TAVO {

Method::Method(const std::string& name, const Container& container, const dto::Params& params)
    : Method(name, container, dynamic_cast<const Object_v1_0*>(&container), params) {}

Method::Method(const std::string& name, const Object_v1_0& object, const dto::Params& params)
    : Method(name, object, &object, params) {}

Method::Method(const std::string& name, const Container& container, const Object_v1_0* object,
               const dto::Params& params)
    : container_(container)
    , name_(name)
    , path_(container.path_)
    , params_(params)
    , object_(object) {
    if (!object_)
        return;
    const auto remote = object_->remoteMethod(name);
    id_ = remote.id;
    encoder_ = remote.encoder;
    decoder_ = remote.decoder;
}

std::string Method::getFullName() const { return path_->joinedWith(name_); }

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
    writeErrorLine("Method " + method.getFullName() + " has not been executed.  Can't return valid results");
}

} // namespace TAVO
