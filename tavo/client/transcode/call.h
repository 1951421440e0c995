#pragma once

#include <string_view>

namespace TAVO::TAVOXTranscode {

/// In a Call, as the request: the method has no parameters. As the reply: it returns its status alone.
struct None {};

/// A remote method as a constant: its name, its request record and its reply record. All else follows from
/// it: encoder and decoder, the row in the type's table, the arguments of Object_v1_0::make, and the handler
/// of a simulated object. Pass the library's constants to make(); define some for the methods of a type of
/// your own:
///
/// @code
/// inline constexpr Call<ShiftRequest, ShiftReply> shiftDR{"shiftDR"};
/// inline constexpr Call<None, TapStateGetReply> tapStateGet{"tapStateGet"};
/// inline constexpr Call<TapStateSetRequest> tapStateSet{"tapStateSet"};
/// @endcode
template <class Request = None, class Reply = None>
struct Call {
    std::string_view name; ///< as the device lists it; a literal, or a text that lives as long
};

} // namespace TAVO::TAVOXTranscode
