#include <tavo/client/commonmodules/com.h>

#include <tavo/client/transcode/internal/function_names.h>

namespace CommonModules::TAVOXTranscode::com_v1_0 {

TAVO_METHODS(open, close, recv, send);

} // namespace CommonModules::TAVOXTranscode::com_v1_0

namespace TAVO {

std::vector<std::uint8_t> dto::convert_to_byte_array(const std::vector<int>& integers) {
    std::vector<std::uint8_t> bytes(integers.size());
    for (const auto integer : integers)
        bytes.push_back(static_cast<std::uint8_t>(integer));
    return bytes;
}

std::vector<int> PlainResult<std::vector<int>>::of(const dto::result& outcome) {
    const auto& data = dto::replyOf<dto::com::RecvReply>(outcome).data;
    return {data.begin(), data.end()};
}

} // namespace TAVO

namespace CommonModules {

namespace com_v1_0 = TAVOXTranscode::com_v1_0;

std::shared_ptr<TAVO::Method> Com_v1_0::getOpenMethod(int value1, int value2, bool flag1, bool flag2,
                                                      int value3, bool flag3, bool flag4, bool flag5,
                                                      bool flag6) const {
    return make(com_v1_0::open, value1, value2, flag1, flag2, value3, flag3, flag4, flag5, flag6);
}

std::shared_ptr<TAVO::Method> Com_v1_0::getCloseMethod() const { return make(com_v1_0::close); }

std::shared_ptr<TAVO::Method> Com_v1_0::getSendMethod(int, std::vector<int> data) const {
    return make(com_v1_0::send, TAVO::dto::convert_to_byte_array(data));
}

std::shared_ptr<TAVO::BoundMethod<std::vector<int>>> Com_v1_0::getRecvMethod(int value) const {
    return make<std::vector<int>>(com_v1_0::recv, value);
}

ComFactory::ComFactory()
    : TypeFactory("com", {servedBy<Com_v1_0>("1.0", isAtMostOneZero)}) {}

} // namespace CommonModules
