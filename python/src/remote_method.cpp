#include "remote_method.h"

#include <tavo/client/object/method_tables.h>

namespace TAVO::python {

RemoteMethod::RemoteMethod(const TAVOXTranscode::MethodRow& methodRow)
    : name(methodRow.name)
    , row(&methodRow) {
    request = FieldType::ofRecord(row->request ? row->request->fields() : std::vector<FieldDescription>());
    if (row->reply)
        reply = FieldType::ofRecord(row->reply->fields());
}

py::list tables() {
    py::list all;
    for (const auto& table : objectTables()) {
        py::list methods;
        for (const auto& row : table.rows)
            methods.append(std::make_shared<RemoteMethod>(row));
        all.append(py::make_tuple(std::string(table.type), std::string(table.version), methods));
    }
    return all;
}

} // namespace TAVO::python
