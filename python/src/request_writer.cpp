#include "request_writer.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "values.h"

namespace TAVO::python {

namespace {

/// From this size on a block is not copied twice.
constexpr Py_ssize_t longBlock = 4096;

[[noreturn]] void refuse(PyObject* kind, const std::string& message) {
    PyErr_SetString(kind, message.c_str());
    throw py::error_already_set();
}

[[noreturn]] void refuseType(const std::string& path, const std::string& wanted, py::handle value) {
    refuse(PyExc_TypeError, "'" + path + "' must be " + wanted + ", not " + Py_TYPE(value.ptr())->tp_name);
}

py::object stolen(PyObject* object) {
    if (!object)
        throw py::error_already_set();
    return py::reinterpret_steal<py::object>(object);
}

/// The number itself, or what __index__ makes of the value.
py::object integerIn(py::handle value, const std::string& path, const char* wanted) {
    if (PyLong_Check(value.ptr()))
        return py::reinterpret_borrow<py::object>(value);
    if (!PyIndex_Check(value.ptr()))
        refuseType(path, wanted, value);
    return stolen(PyNumber_Index(value.ptr()));
}

std::string rangeText(const FieldType& type) {
    if (type.isSigned) {
        const auto most = std::numeric_limits<std::int64_t>::max() >> (64 - type.bits);
        return "from " + std::to_string(-most - 1) + " to " + std::to_string(most);
    }
    return "from 0 to " + std::to_string(std::numeric_limits<std::uint64_t>::max() >> (64 - type.bits));
}

[[noreturn]] void refuseRange(const FieldType& type, const py::object& number, const std::string& path) {
    PyErr_Clear();
    refuse(PyExc_ValueError,
           "'" + path + "' must be " + rangeText(type) + ", not " + std::string(py::str(number)));
}

} // namespace

RequestWriter::~RequestWriter() {
    for (auto& block : blocks_)
        PyBuffer_Release(&block.content);
}

void RequestWriter::writeNumber(std::uint64_t number, unsigned bytes) {
    for (unsigned i = bytes; i-- > 0;)
        bytes_.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

void RequestWriter::writeInteger(const FieldType& type, py::handle value, const std::string& path) {
    const auto number = integerIn(value, path, "an integer");
    std::uint64_t bits = 0;
    if (type.isSigned) {
        int overflow = 0;
        const auto taken = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
        const auto most = std::numeric_limits<std::int64_t>::max() >> (64 - type.bits);
        if (overflow != 0 || taken > most || taken < -most - 1)
            refuseRange(type, number, path);
        bits = static_cast<std::uint64_t>(taken);
    } else {
        bits = PyLong_AsUnsignedLongLong(number.ptr());
        if (PyErr_Occurred() || bits > std::numeric_limits<std::uint64_t>::max() >> (64 - type.bits))
            refuseRange(type, number, path);
    }
    writeNumber(bits, type.bits / 8);
}

void RequestWriter::writeLength(Py_ssize_t length, const std::string& path) {
    if (static_cast<std::uint64_t>(length) > std::numeric_limits<std::uint32_t>::max())
        refuse(PyExc_ValueError, "'" + path + "' must be shorter than 4 GiB");
    writeNumber(static_cast<std::uint64_t>(length), 4);
}

void RequestWriter::writeText(py::handle value, const std::string& path) {
    if (!PyUnicode_Check(value.ptr()))
        refuseType(path, "a str", value);
    Py_ssize_t length = 0;
    const char* text = PyUnicode_AsUTF8AndSize(value.ptr(), &length);
    py::object escaped;
    if (!text) {
        PyErr_Clear();
        escaped = py::reinterpret_steal<py::object>(
            PyUnicode_AsEncodedString(value.ptr(), "utf-8", "surrogateescape"));
        if (!escaped) {
            PyErr_Clear();
            refuse(PyExc_ValueError, "'" + path + "' has surrogates that stand for no byte");
        }
        text = PyBytes_AS_STRING(escaped.ptr());
        length = PyBytes_GET_SIZE(escaped.ptr());
    }
    writeLength(length, path);
    bytes_.insert(bytes_.end(), text, text + length);
}

void RequestWriter::writeBytes(py::handle value, const std::string& path) {
    if (!PyObject_CheckBuffer(value.ptr()))
        refuseType(path, "bytes-like", value);
    Py_buffer content;
    if (PyObject_GetBuffer(value.ptr(), &content, PyBUF_SIMPLE) != 0) {
        PyErr_Clear();
        refuse(PyExc_ValueError, "'" + path + "' must be contiguous in memory");
    }
    try {
        writeLength(content.len, path);
        if (content.len >= longBlock) {
            blocks_.push_back({bytes_.size(), content});
            return;
        }
        const auto* begin = static_cast<const std::uint8_t*>(content.buf);
        bytes_.insert(bytes_.end(), begin, begin + content.len);
    } catch (...) {
        PyBuffer_Release(&content);
        throw;
    }
    PyBuffer_Release(&content);
}

void RequestWriter::writeList(const FieldType& type, py::handle value, const std::string& path) {
    if (PyUnicode_Check(value.ptr()))
        refuseType(path, "a sequence", value);
    const auto items = py::reinterpret_steal<py::object>(PySequence_Fast(value.ptr(), ""));
    if (!items) {
        if (!PyErr_ExceptionMatches(PyExc_TypeError))
            throw py::error_already_set();
        PyErr_Clear();
        refuseType(path, "a sequence", value);
    }
    const auto size = PySequence_Fast_GET_SIZE(items.ptr());
    writeLength(size, path);
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(items.ptr()) && i < size; ++i) {
        // Converting an item may run code that changes the list.
        const auto item = py::reinterpret_borrow<py::object>(PySequence_Fast_GET_ITEM(items.ptr(), i));
        write(type.parts.front(), item, path + "[" + std::to_string(i) + "]");
    }
    if (PySequence_Fast_GET_SIZE(items.ptr()) != size)
        refuse(PyExc_ValueError, "'" + path + "' changed while it was read");
}

void RequestWriter::writeRecord(const FieldType& type, py::handle value, const std::string& path) {
    const bool isMapping = PyDict_Check(value.ptr());
    std::size_t found = 0;
    for (const auto& part : type.parts) {
        const auto inner = path + "." + part.name;
        py::object content;
        if (isMapping) {
            auto* const item = PyDict_GetItemString(value.ptr(), part.name.c_str());
            if (!item)
                refuse(PyExc_TypeError, "'" + inner + "' is missing");
            content = py::reinterpret_borrow<py::object>(item);
            ++found;
        } else {
            content = py::getattr(value, part.name.c_str(), py::none());
            if (content.is_none())
                refuseType(path, "a dict or a record with " + type.words, value);
        }
        write(part, content, inner);
    }
    if (isMapping && static_cast<std::size_t>(PyDict_Size(value.ptr())) != found)
        refuse(PyExc_TypeError, "'" + path + "' has other fields than " + type.words);
}

void RequestWriter::write(const FieldType& type, py::handle value, const std::string& path) {
    switch (type.kind) {
    case FieldType::Kind::boolean: {
        if (PyBool_Check(value.ptr())) {
            bytes_.push_back(value.ptr() == Py_True ? 1 : 0);
            return;
        }
        const auto number = integerIn(value, path, "a bool");
        const auto bit = PyLong_AsLong(number.ptr());
        if (bit != 0 && bit != 1) {
            PyErr_Clear();
            refuse(PyExc_ValueError,
                   "'" + path + "' must be True or False, not " + std::string(py::str(number)));
        }
        bytes_.push_back(static_cast<std::uint8_t>(bit));
        return;
    }
    case FieldType::Kind::integer:
        writeInteger(type, value, path);
        return;
    case FieldType::Kind::text:
        writeText(value, path);
        return;
    case FieldType::Kind::bytes:
        writeBytes(value, path);
        return;
    case FieldType::Kind::list:
        writeList(type, value, path);
        return;
    case FieldType::Kind::record:
        writeRecord(type, value, path);
        return;
    }
}

std::uint64_t RequestWriter::Source::size() const {
    std::uint64_t size = writer_.bytes_.size();
    for (const auto& block : writer_.blocks_)
        size += static_cast<std::uint64_t>(block.content.len);
    return size;
}

std::span<const std::uint8_t> RequestWriter::Source::piece() const {
    const auto& blocks = writer_.blocks_;
    if (block_ < blocks.size() && blocks[block_].position == position_) {
        const auto& content = blocks[block_].content;
        return std::span(static_cast<const std::uint8_t*>(content.buf), static_cast<std::size_t>(content.len))
            .subspan(inBlock_);
    }
    const auto end = block_ < blocks.size() ? blocks[block_].position : writer_.bytes_.size();
    return std::span(writer_.bytes_).subspan(position_, end - position_);
}

void RequestWriter::Source::skip(std::size_t count) {
    const auto& blocks = writer_.blocks_;
    if (block_ == blocks.size() || blocks[block_].position != position_) {
        position_ += count;
        return;
    }
    inBlock_ += count;
    if (inBlock_ == static_cast<std::size_t>(blocks[block_].content.len)) {
        ++block_;
        inBlock_ = 0;
    }
}

std::span<const std::uint8_t> RequestWriter::Source::gather(std::uint64_t count) {
    const auto next = piece();
    if (next.size() >= count) {
        skip(static_cast<std::size_t>(count));
        return next.first(static_cast<std::size_t>(count));
    }
    gathered_.resize(static_cast<std::size_t>(count));
    receive(gathered_.data(), count);
    return gathered_;
}

void RequestWriter::Source::receive(std::uint8_t* destination, std::uint64_t count) {
    while (count > 0) {
        const auto next = piece();
        const auto taken = static_cast<std::size_t>(std::min<std::uint64_t>(count, next.size()));
        std::memcpy(destination, next.data(), taken);
        skip(taken);
        destination += taken;
        count -= taken;
    }
}

std::shared_ptr<dto::request_packet> makeRequest(const TAVOXTranscode::RequestDescription& description,
                                                 const FieldType& type, const py::tuple& arguments) {
    RequestWriter writer;
    for (std::size_t i = 0; i < type.parts.size(); ++i) {
        const auto& part = type.parts[i];
        writer.write(part, PyTuple_GET_ITEM(arguments.ptr(), static_cast<Py_ssize_t>(i)), part.name);
    }
    auto request = description.create();
    writer.readBy([&](TAVOX::InputStream& in) { description.read(in, *request); });
    return request;
}

} // namespace TAVO::python
