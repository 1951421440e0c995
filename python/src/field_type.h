#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <pybind11/pybind11.h>

#include <tavo/client/transcode/value.h>

namespace TAVO::python {

namespace py = pybind11;

/// The type of a field or of a whole record, with what conversions to and from Python need.
struct FieldType {
    enum class Kind { boolean, integer, text, bytes, list, record };

    Kind kind = Kind::boolean;
    /// The name of the field; empty for elements of lists and whole records.
    std::string name;
    /// In words, as FieldDescription::type.
    std::string words;
    /// Of integers.
    unsigned bits = 0;
    bool isSigned = false;
    /// The only one is that of the elements of a list; otherwise those of the fields of a record.
    std::vector<FieldType> parts;
    /// Of a record in a reply: its Python class, and the names of its fields as interned texts.
    py::object recordClass;
    std::vector<py::object> keys;

    /// @throws std::invalid_argument for words that no FieldDescription has.
    static FieldType parse(std::string name, const std::string& words);
    /// The type of a record with these fields.
    static FieldType ofRecord(const std::vector<FieldDescription>& fields);
    /// Makes the classes of all records in this type: `make(name, [(field, type in words), ...])`.
    void makeClasses(const std::string& className, const py::object& make);
};

} // namespace TAVO::python
