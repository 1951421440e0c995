#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "field_type.h"

#include <tavo/client/wire/input_stream.h>

namespace TAVO::python {

/// Takes the arguments of a call as the bytes of its request. Long blocks stay where they are, in the memory
/// of their Python objects, until the record reads them.
class RequestWriter {
public:
    RequestWriter() = default;
    RequestWriter(const RequestWriter&) = delete;
    RequestWriter& operator=(const RequestWriter&) = delete;
    ~RequestWriter();

    /// @param path names the value in messages.
    /// @throws py::error_already_set with a TypeError or ValueError.
    void write(const FieldType& type, py::handle value, const std::string& path);

    /// Calls `read` with a reader of everything that was written.
    template <class Read>
    void readBy(Read read) {
        if (blocks_.empty()) {
            TAVOX::InputStream in(bytes_.data(), bytes_.size());
            read(in);
        } else {
            Source source(*this);
            TAVOX::InputStream in(source, source.size());
            read(in);
        }
    }

private:
    /// A block that follows the first `position` bytes.
    struct Block {
        std::size_t position;
        Py_buffer content;
    };

    /// Bytes and blocks in their order.
    class Source : public TAVOX::InputSource {
    public:
        explicit Source(const RequestWriter& writer)
            : writer_(writer) {}
        std::uint64_t size() const;
        std::span<const std::uint8_t> gather(std::uint64_t count) override;
        void receive(std::uint8_t* destination, std::uint64_t count) override;

    private:
        /// What comes next in one piece.
        std::span<const std::uint8_t> piece() const;
        void skip(std::size_t count);

        const RequestWriter& writer_;
        std::size_t position_ = 0;
        std::size_t block_ = 0;
        std::size_t inBlock_ = 0;
        std::vector<std::uint8_t> gathered_;
    };

    void writeNumber(std::uint64_t number, unsigned bytes);
    void writeInteger(const FieldType& type, py::handle value, const std::string& path);
    void writeText(py::handle value, const std::string& path);
    void writeBytes(py::handle value, const std::string& path);
    void writeList(const FieldType& type, py::handle value, const std::string& path);
    void writeRecord(const FieldType& type, py::handle value, const std::string& path);
    void writeLength(Py_ssize_t length, const std::string& path);

    std::vector<std::uint8_t> bytes_;
    std::vector<Block> blocks_;
};

} // namespace TAVO::python
