#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <tavo/client/transcode/block_receiver.h>
#include <tavo/client/transcode/value_view.h>

#include "process.h"

namespace TAVO::python {

/// Long blocks of results as Python's bytes, which were received without a copy. Their records hold one byte
/// each, whose address tells which block it stands for. Make and destroy it with the GIL.
class ReceivedBlocks {
public:
    /// The bytes that this field of a record stands for; null if it stands for itself.
    PyObject* find(const ValueView::Bytes& field) const {
        if (field.size() == 1)
            for (const auto& [mark, bytes] : blocks_)
                if (mark == field.data())
                    return bytes.ptr();
        return nullptr;
    }
    void add(const std::uint8_t* mark, py::object bytes) { blocks_.emplace_back(mark, std::move(bytes)); }
    bool empty() const { return blocks_.empty(); }

private:
    std::vector<std::pair<const std::uint8_t*, py::object>> blocks_;
};

/// Receives the blocks of one exchange, in a thread that has given up the GIL.
class PythonBlockReceiver : public BlockReceiver {
public:
    PythonBlockReceiver(NoGil& outside, ReceivedBlocks& blocks)
        : outside_(outside)
        , blocks_(blocks) {}

    void receive(TAVOX::InputStream& in, std::uint64_t length, std::vector<std::uint8_t>& block) override;

private:
    NoGil& outside_;
    ReceivedBlocks& blocks_;
};

} // namespace TAVO::python
