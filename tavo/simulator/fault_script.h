#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// What can go wrong with one request.
///
/// There are two kinds of faults. Count, Size, Stray, DeviceError and ReturnCode change the answer itself;
/// Silent, Dribble, Cut, Close and Reset change its delivery. A request may have several of the first kind
/// and one of the second. Except with DeviceError and ReturnCode the appliance carries out the request and
/// then spoils the answer.
namespace faults {

/// There is no answer; the connection stays open and further requests are read.
struct Silent {
    bool operator==(const Silent&) const = default;
};

/// The answer arrives one byte at a time, with a pause after each.
struct Dribble {
    std::chrono::microseconds pause{500};
    bool operator==(const Dribble&) const = default;
};

/// Only the first `bytes` bytes of the answer are sent (all of a shorter one), then the connection is closed.
struct Cut {
    std::size_t bytes = 0;
    bool operator==(const Cut&) const = default;
};

/// The connection is closed instead of an answer.
struct Close {
    bool operator==(const Close&) const = default;
};

/// The connection is reset instead of an answer.
struct Reset {
    bool operator==(const Reset&) const = default;
};

/// The answer announces this number of results instead of the true one; the results stay as they are.
struct Count {
    std::uint32_t results = 0;
    bool operator==(const Count&) const = default;
};

/// The answer announces `bytes` as the size of one of its blocks; the block stays as it is. `result` is the
/// first result. The connection stays open: add Cut with a large number to close it after the answer.
struct Size {
    enum class Field { status, error, result };
    Field field = Field::status;
    std::uint32_t bytes = 0;
    bool operator==(const Size&) const = default;
};

/// This many extra bytes (0xA5) follow the answer, in the same send.
struct Stray {
    std::size_t bytes = 1;
    bool operator==(const Stray&) const = default;
};

/// The appliance carries out the first `results` calls of the request and reports this error. If the request
/// has fewer calls, results with only the return code 0 make up the number.
struct DeviceError {
    std::uint32_t code = 1000;
    std::uint32_t results = 0;
    std::string message;
    bool operator==(const DeviceError&) const = default;
};

/// The call at position `index` of the request, counted from 0, is not carried out. It answers with this
/// return code and a reply of zeros and empty texts and lists.
struct ReturnCode {
    std::int32_t code = 0;
    std::uint32_t index = 0;
    bool operator==(const ReturnCode&) const = default;
};

} // namespace faults

using Fault =
    std::variant<faults::Silent, faults::Dribble, faults::Cut, faults::Close, faults::Reset, faults::Count,
                 faults::Size, faults::Stray, faults::DeviceError, faults::ReturnCode>;

/// Whether the fault changes the delivery of the answer.
TAVO_SIMULATOR_API bool isOfDelivery(const Fault& fault);

/// Which requests go wrong, and how. Requests are counted from 1 over the lifetime of a Simulator, across all
/// its connections. A value type, not synchronised.
///
/// As text a fault is `REQUEST:FAULT`, where FAULT is one of
///
/// | text                              | fault                                                           |
/// |-----------------------------------|-----------------------------------------------------------------|
/// | `silent`                          | Silent                                                          |
/// | `dribble` or `dribble=MICROSECONDS` | Dribble, 500 microseconds when not given                      |
/// | `cut=BYTES`                       | Cut                                                             |
/// | `close`                           | Close                                                           |
/// | `reset`                           | Reset                                                           |
/// | `count=RESULTS`                   | Count                                                           |
/// | `size=FIELD:BYTES`                | Size; FIELD is `status`, `error` or `result`                    |
/// | `stray` or `stray=BYTES`          | Stray, 1 byte when not given                                    |
/// | `error=CODE:RESULTS[:MESSAGE]`    | DeviceError; MESSAGE is all that follows, and may hold colons   |
/// | `return=CODE[:INDEX]`             | ReturnCode; CODE may be negative, INDEX is 0 when not given     |
///
/// Numbers are decimal, or hexadecimal after `0x`. Examples: `3:cut=17`, `5:size=result:0xFFFFFFFF`,
/// `2:error=1006:1:it broke`.
class TAVO_SIMULATOR_API FaultScript {
public:
    FaultScript();
    /// Parses one fault per line in the form above. Skips blank lines and lines that start with #.
    /// @throws std::invalid_argument as add().
    static FaultScript parse(std::string_view text);
    /// Describes the forms that add() accepts, one per line, for help texts.
    static std::string grammar();

    /// Adds a fault in the form above. Returns this script.
    /// @throws std::invalid_argument that names the wrong piece.
    FaultScript& add(std::string_view text);
    /// Adds a fault. Returns this script.
    /// @throws std::invalid_argument if `request` is 0, or if both `fault` and an earlier fault of the
    ///         request change the delivery.
    FaultScript& at(std::uint64_t request, Fault fault);

    /// The faults of one request, in the order they were added.
    std::vector<Fault> faultsAt(std::uint64_t request) const;
    bool empty() const { return faults_.empty(); }
    bool operator==(const FaultScript&) const = default;

private:
    std::multimap<std::uint64_t, Fault> faults_;
};

} // namespace TAVO::simulator
