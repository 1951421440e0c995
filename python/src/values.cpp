#include "values.h"

#include <stdexcept>
#include <utility>
#include <variant>

namespace TAVO::python {

namespace {

py::object stolen(PyObject* object) {
    if (!object)
        throw py::error_already_set();
    return py::reinterpret_steal<py::object>(object);
}

py::object listToPython(const ValueView::List& list, const FieldType& element, const ReceivedBlocks& blocks) {
    auto items = stolen(PyTuple_New(static_cast<Py_ssize_t>(list.size)));
    for (std::size_t i = 0; i < list.size; ++i)
        PyTuple_SET_ITEM(items.ptr(), static_cast<Py_ssize_t>(i),
                         toPython(list[i], element, blocks).release().ptr());
    return items;
}

py::object recordToPython(const ValueView::Record& record, const FieldType& type,
                          const ReceivedBlocks& blocks) {
    auto* const made = reinterpret_cast<PyTypeObject*>(type.recordClass.ptr());
    auto object = stolen(made->tp_alloc(made, 0));
    // Past the class's own __setattr__, which refuses changes.
    for (std::size_t i = 0; i < type.parts.size(); ++i)
        if (PyObject_GenericSetAttr(object.ptr(), type.keys[i].ptr(),
                                    toPython(record[i], type.parts[i], blocks).ptr()) != 0)
            throw py::error_already_set();
    return object;
}

struct Converter {
    const FieldType& type;
    const ReceivedBlocks& blocks;

    py::object operator()(bool value) const { return py::bool_(value); }
    py::object operator()(std::int64_t value) const { return stolen(PyLong_FromLongLong(value)); }
    py::object operator()(std::uint64_t value) const { return stolen(PyLong_FromUnsignedLongLong(value)); }
    py::object operator()(std::string_view value) const { return textOf(value); }
    py::object operator()(const ValueView::Bytes& value) const {
        if (auto* const bytes = blocks.find(value))
            return py::reinterpret_borrow<py::object>(bytes);
        return stolen(PyBytes_FromStringAndSize(reinterpret_cast<const char*>(value.data()),
                                                static_cast<Py_ssize_t>(value.size())));
    }
    py::object operator()(const ValueView::List& value) const {
        return listToPython(value, type.parts.front(), blocks);
    }
    py::object operator()(const ValueView::Record& value) const {
        return recordToPython(value, type, blocks);
    }
};

} // namespace

py::object textOf(std::string_view text) {
    return stolen(PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"));
}

py::object toPython(const ValueView& view, const FieldType& type, const ReceivedBlocks& blocks) {
    return std::visit(Converter{type, blocks}, view.data);
}

} // namespace TAVO::python
