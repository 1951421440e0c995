#pragma once

#include <memory>
#include <optional>
#include <string>

#include "field_type.h"

#include <tavo/client/transcode/method_row.h>

namespace TAVO::python {

/// A method of a remote type, with what calling it from Python needs.
struct RemoteMethod {
    explicit RemoteMethod(const TAVOXTranscode::MethodRow& methodRow);

    std::string name;
    const TAVOXTranscode::MethodRow* row;
    FieldType request; ///< without fields where the method has no parameters
    /// Empty where the method returns its status alone.
    std::optional<FieldType> reply;
};

/// The methods of all types: a list of (type, version, [RemoteMethod]).
py::list tables();

} // namespace TAVO::python
