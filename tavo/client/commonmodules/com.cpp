#include <tavo/client/commonmodules/com.h>

#include <utility>

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

using TAVOXTranscode::makeRequest;

Com_v1_0::Com_v1_0(std::shared_ptr<TAVO::Device> device, const std::string& name, std::uint32_t instanceId,
                   std::shared_ptr<TAVO::Container> parent,
                   const TAVOXTranscode::com_v1_0::EncoderList& encoders,
                   const TAVOXTranscode::com_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Com_v1_0::~Com_v1_0() = default;

std::shared_ptr<TAVO::Method> Com_v1_0::getOpenMethod(int value1, int value2, bool flag1, bool flag2,
                                                      int value3, bool flag3, bool flag4, bool flag5,
                                                      bool flag6) const {
    return prepare("open", makeRequest<TAVO::dto::com::OpenRequest>(value1, value2, flag1, flag2, value3,
                                                                    flag3, flag4, flag5, flag6));
}

std::shared_ptr<TAVO::Method> Com_v1_0::getCloseMethod() const { return prepare("close"); }

std::shared_ptr<TAVO::Method> Com_v1_0::getSendMethod(int, std::vector<int> data) const {
    return prepare("send", makeRequest<TAVO::dto::com::SendRequest>(TAVO::dto::convert_to_byte_array(data)));
}

std::shared_ptr<TAVO::BoundMethod<std::vector<int>>> Com_v1_0::getRecvMethod(int value) const {
    return prepare<std::vector<int>>("recv", makeRequest<TAVO::dto::com::RecvRequest>(value));
}

ComFactory::ComFactory()
    : ObjectFactory("com") {}

std::shared_ptr<TAVO::Container> ComFactory::build(std::shared_ptr<TAVO::Device> device,
                                                   std::shared_ptr<TAVO::Container> parent,
                                                   const std::string& name, std::uint32_t instanceId,
                                                   std::shared_ptr<TAVO::Object_v1_0> probe) {
    requireAtMostOneZero("com", probe->version());
    namespace tables = TAVOXTranscode::com_v1_0;
    return create<Com_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace CommonModules
