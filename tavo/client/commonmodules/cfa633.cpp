#include <tavo/client/commonmodules/cfa633.h>

#include <utility>

namespace CommonModules {

using TAVOXTranscode::makeRequest;

Cfa633_v1_0::Cfa633_v1_0(std::shared_ptr<TAVO::Device> device, const std::string& name,
                         std::uint32_t instanceId, std::shared_ptr<TAVO::Container> parent,
                         const TAVOXTranscode::cfa633_v1_0::EncoderList& encoders,
                         const TAVOXTranscode::cfa633_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Cfa633_v1_0::~Cfa633_v1_0() = default;

std::shared_ptr<TAVO::Method> Cfa633_v1_0::getLcdPrintMethod(int first, int second, std::string text) const {
    return prepare("lcdPrint",
                   makeRequest<TAVO::dto::cfa633::LcdPrintRequest>(first, second, std::move(text)));
}

std::shared_ptr<TAVO::Method> Cfa633_v1_0::getLcdClearMethod() const { return prepare("lcdClear"); }

std::shared_ptr<TAVO::Method> Cfa633_v1_0::getLcdBackLightMethod(int level) const {
    return prepare("lcdBackLight", makeRequest<TAVO::dto::cfa633::LcdBackLightRequest>(level));
}

Cfa633Factory::Cfa633Factory()
    : ObjectFactory("cfa633") {}

std::shared_ptr<TAVO::Container> Cfa633Factory::build(std::shared_ptr<TAVO::Device> device,
                                                      std::shared_ptr<TAVO::Container> parent,
                                                      const std::string& name, std::uint32_t instanceId,
                                                      std::shared_ptr<TAVO::Object_v1_0> probe) {
    requireAtMostOneZero("cfa633", probe->version());
    namespace tables = TAVOXTranscode::cfa633_v1_0;
    return create<Cfa633_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace CommonModules
