#pragma once

#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/transcode/base_records.h>

namespace TAVO::HWDebug {

/// The status of a module's debug headers, as the headerStatusGet operations of most debug modules return it.
/// The meaning of the flags and of the lists of names is the device's to define.
struct TAVO_API HeaderResult {
    HeaderResult() = default;
    HeaderResult(const dto::Base::HeaderStatusGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit HeaderResult(const dto::result& outcome);

    std::vector<dto::Base::Header> headers;
    std::vector<dto::Base::Connection> connections;
    bool operator==(const HeaderResult&) const = default;
};

} // namespace TAVO::HWDebug
