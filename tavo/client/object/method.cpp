#include <tavo/client/object/bound_method.h>

#include <iostream>
#include <utility>

#include <tavo/client/object/object.h>

namespace TAVO {

Method::Method(const std::string& name, const Container& container, const dto::Params& params)
    : container_(container)
    , name_(name)
    , fullName_(container.fullName_ + Container::SEPARATOR + name)
    , params_(params)
    , object_(dynamic_cast<const Object_v1_0*>(&container)) {
    if (!object_)
        return;
    id_ = object_->getMethodID(name);
    encoder_ = object_->getEncoder(name);
    decoder_ = object_->getDecoder(name);
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
