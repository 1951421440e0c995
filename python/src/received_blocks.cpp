#include "received_blocks.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace TAVO::python {

namespace {

/// Grows as its content arrives. Knows when the GIL is held: everything but the reading needs it.
class GrowingBytes {
public:
    explicit GrowingBytes(NoGil& outside)
        : outside_(outside) {}
    GrowingBytes(const GrowingBytes&) = delete;
    GrowingBytes& operator=(const GrowingBytes&) = delete;
    ~GrowingBytes() {
        if (object_)
            outside_.within([&] { Py_CLEAR(object_); });
    }

    void grow(std::uint64_t size) {
        if (size > static_cast<std::uint64_t>(std::numeric_limits<Py_ssize_t>::max()))
            throw std::bad_alloc();
        const auto wanted = static_cast<Py_ssize_t>(size);
        bool failed = false;
        outside_.within([&] {
            if (object_)
                failed = _PyBytes_Resize(&object_, wanted) != 0;
            else
                failed = !(object_ = PyBytes_FromStringAndSize(nullptr, wanted));
            if (failed)
                PyErr_Clear();
        });
        if (failed)
            throw std::bad_alloc();
    }
    std::uint8_t* data() { return reinterpret_cast<std::uint8_t*>(PyBytes_AS_STRING(object_)); }

    void endIn(ReceivedBlocks& blocks, const std::uint8_t* mark) {
        outside_.within(
            [&] { blocks.add(mark, py::reinterpret_steal<py::object>(std::exchange(object_, nullptr))); });
    }

private:
    NoGil& outside_;
    PyObject* object_ = nullptr;
};

} // namespace

void PythonBlockReceiver::receive(TAVOX::InputStream& in, std::uint64_t length,
                                  std::vector<std::uint8_t>& block) {
    constexpr std::uint64_t first = 0x10000;
    constexpr std::uint64_t growth = 16;
    GrowingBytes bytes(outside_);
    std::uint64_t received = 0;
    while (received < length) {
        const auto size = std::min(length, std::max(first, growth * received));
        bytes.grow(size);
        in.readRaw(bytes.data() + received, size - received);
        received = size;
    }
    block.assign(1, 0);
    bytes.endIn(blocks_, block.data());
}

} // namespace TAVO::python
