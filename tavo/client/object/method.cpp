#include <tavo/client/object/bound_method.h>

#include <utility>

#include <tavo/client/object/internal/name_path.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/internal/error_line.h>

namespace TAVO {

Method::Method(const std::string& name, const Container& container, const dto::Params& params)
    : container_(container)
    , params_(params) {
    if (const auto* object = dynamic_cast<const Object_v1_0*>(&container))
        target_ = object->targetOf(name);
    else
        target_ = std::make_shared<Target>(Target{.path = std::make_shared<NamePath>(container.path_, name)});
}

Method::Method(const std::string& name, const Object_v1_0& object, const dto::Params& params)
    : Method(object, name, dto::Params(params)) {}

Method::Method(const Object_v1_0& object, std::string_view name, dto::Params&& params)
    : Method(object, object.targetOf(name), std::move(params)) {}

Method::Method(const Object_v1_0& object, std::shared_ptr<const Target> target, dto::Params&& params)
    : container_(object)
    , target_(std::move(target))
    , params_(std::move(params)) {}

std::string Method::getName() const { return target_->path->name(); }

std::string Method::getFullName() const { return target_->path->joined(); }

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
