#include <tavo/client/object/bound_method.h>

#include <utility>

#include <tavo/client/object/internal/name_path.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/internal/error_line.h>

namespace TAVO {

Method::Method(const std::string& name, const Container& container, const dto::Params& params)
    : container_(container)
    , params_(params)
    , object_(dynamic_cast<const Object_v1_0*>(&container)) {
    if (object_)
        bind(name);
    else
        path_ = std::make_shared<NamePath>(container.path_, name);
}

Method::Method(const std::string& name, const Object_v1_0& object, const dto::Params& params)
    : Method(object, name, dto::Params(params)) {}

Method::Method(const Object_v1_0& object, std::string_view name, dto::Params&& params)
    : container_(object)
    , params_(std::move(params))
    , object_(&object) {
    bind(name);
}

void Method::bind(std::string_view name) {
    auto remote = object_->remoteMethod(name);
    path_ = std::move(remote.path);
    id_ = remote.id;
    encoder_ = remote.encoder;
    decoder_ = remote.decoder;
}

std::string Method::getName() const { return path_->name(); }

std::string Method::getFullName() const { return path_->joined(); }

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
