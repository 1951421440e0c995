#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <tavo/cli/failure.h>
#include <tavo/cli/new_file.h>
#include <tavo/client/wire/trace.h>
#include <tavo/trace/names.h>
#include <tavo/trace/pcapng_writer.h>

namespace TAVO::cli {

/// The file of --trace: what passes between the tool and its devices, as a pcapng file that is valid after
/// every exchange. It replaces an earlier file at the first traced byte, not before. When it cannot be
/// written any more, the trace ends, and the exchanges go on.
class TraceFile {
public:
    /// @param withSecrets whether to keep passwords and lock ids.
    /// @throws Failure (usage) if the file cannot be made.
    TraceFile(const std::string& path, bool withSecrets);
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    /// For one device. Keeps the file. The end of the sink is the end of the connection.
    static TraceSink sink(const std::shared_ptr<TraceFile>& file);

    /// @throws Failure (usage) if not everything was written.
    void complete();

private:
    class Conversation;

    /// Runs an action that writes.
    template <class Action>
    void write(Action action);
    /// Makes the file what it is to be called, at the first use.
    trace::PcapngWriter& writer();

    /// A share asks its device in two threads.
    std::mutex mutex_;
    NewFile file_;
    std::optional<trace::PcapngWriter> writer_;
    std::optional<Failure> failure_;
    bool withSecrets_;
    std::uint32_t connections_ = 0;
    std::vector<std::uint8_t> piece_;
};

} // namespace TAVO::cli
