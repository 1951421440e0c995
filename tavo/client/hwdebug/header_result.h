#pragma once

#include <tuple>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/field.h>

namespace TAVO::HWDebug {

/// The status of a module's debug headers. The header status operations of the debug modules yield it, except
/// for that of Hdt_v1_1, which yields the reply with the same two lists. What the flags and the lists of
/// names mean is the device's to define.
struct TAVO_API HeaderResult {
    HeaderResult() = default;
    /// Copies the reply.
    HeaderResult(const dto::Base::HeaderStatusGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
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
