#pragma once

#include <string_view>

namespace TAVO::TAVOXTranscode {

/// Stands for "no parameters" or "status only" in a Call.
struct None {};

/// A remote method as a constant: its name, its request record and its reply record, said once. The functions
/// that write and read them, the row of its type's table, the call of a proxy (Object_v1_0::make) and the
/// handler of a simulated object all follow from it.
///
/// @code
/// inline constexpr Call<ShiftRequest, ShiftReply> shiftDR{"shiftDR"};
/// inline constexpr Call<None, TapStateGetReply> tapStateGet{"tapStateGet"};
/// inline constexpr Call<TapStateSetRequest> tapStateSet{"tapStateSet"};
/// @endcode
template <class Request = None, class Reply = None>
struct Call {
    std::string_view name;
};

} // namespace TAVO::TAVOXTranscode
