#include <tavo/cli/trace_file.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include <fmt/format.h>

#include <tavo/client/version_number.h>
#include <tavo/trace/blanker.h>
#include <tavo/trace/tcp_writer.h>

namespace TAVO::cli {

namespace {

constexpr mode_t ownerOnly = 0600;

} // namespace

/// What one device sends and receives, over one connection after the other.
class TraceFile::Conversation {
public:
    explicit Conversation(std::shared_ptr<TraceFile> file)
        : file_(std::move(file)) {}
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;
    ~Conversation() {
        file_->write([this] {
            if (connection_)
                connection_->close(std::chrono::system_clock::now());
        });
    }

    void take(const TracedBytes& traced) {
        file_->write([&] {
            if (!connection_ || number_ != traced.connection) {
                if (connection_)
                    connection_->close(traced.time);
                number_ = traced.connection;
                connection_.emplace(file_->writer(), file_->connections_++, traced.time);
                blanker_.emplace(names_);
            }
            for (auto rest = traced.bytes; !rest.empty();) {
                const auto piece = rest.first(std::min(rest.size(), trace::TcpWriter::longestSegment));
                rest = rest.subspan(piece.size());
                write(traced.direction == TraceDirection::sent, piece, traced.time);
            }
        });
    }

private:
    void write(bool isSent, std::span<const std::uint8_t> piece, std::chrono::system_clock::time_point time) {
        using Side = trace::TcpWriter::Side;
        const auto side = isSent ? Side::client : Side::device;
        if (file_->withSecrets_)
            return connection_->data(side, piece, time);
        file_->piece_.assign(piece.begin(), piece.end());
        if (isSent)
            blanker_->sent(file_->piece_);
        else
            blanker_->received(file_->piece_);
        connection_->data(side, file_->piece_, time);
    }

    std::shared_ptr<TraceFile> file_;
    std::uint64_t number_ = 0;
    std::optional<trace::TcpWriter> connection_;
    trace::Names names_;
    std::optional<trace::Blanker> blanker_;
};

TraceFile::TraceFile(const std::string& path, bool withSecrets)
    : file_(path, ownerOnly)
    , withSecrets_(withSecrets) {}

trace::PcapngWriter& TraceFile::writer() {
    if (!writer_) {
        writer_.emplace([this](std::span<const std::uint8_t> block) { file_.write(block); },
                        fmt::format("tavo {}", ClientLibraryVersion), "device");
        file_.publish();
    }
    return *writer_;
}

template <class Action>
void TraceFile::write(Action action) {
    const std::lock_guard lock(mutex_);
    if (failure_)
        return;
    try {
        action();
    } catch (const Failure& failure) {
        failure_ = failure;
    }
}

TraceSink TraceFile::sink(const std::shared_ptr<TraceFile>& file) {
    return [conversation = std::make_shared<Conversation>(file)](const TracedBytes& traced) {
        conversation->take(traced);
    };
}

void TraceFile::complete() {
    write([this] {
        if (writer_)
            file_.complete();
    });
    if (failure_)
        throw Failure(*failure_);
}

} // namespace TAVO::cli
