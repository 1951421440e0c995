#pragma once

#include <tuple>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/field.h>

namespace TAVO::HWDebug {

/// The status of a module's debug headers, as the header status operations of the debug modules yield it, all
/// but Hdt_v1_1's. It is a dto::Base::HeaderStatusGetReply with the same two lists. The meaning of the flags
/// and of the lists of names in them is the device's to define.
struct TAVO_API HeaderResult {
    HeaderResult() = default;
    HeaderResult(const dto::Base::HeaderStatusGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit HeaderResult(const dto::result& outcome);

    std::vector<dto::Base::Header> headers;         ///< each a name and three flags
    std::vector<dto::Base::Connection> connections; ///< each two lists of names
    bool operator==(const HeaderResult&) const = default;
    template <class Self = HeaderResult>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"headers", &Self::headers},
                          dto::Field{"connections", &Self::connections}};
    }
};

} // namespace TAVO::HWDebug
