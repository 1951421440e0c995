#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/object/object_factory.h>

/// Tables of the "private" object: the eight methods of every object and nothing else.
namespace TAVO::TAVOXTranscode::private_v1_0 {

class TAVO_API EncoderList : public base_v1_0::EncoderList {};
class TAVO_API DecoderList : public base_v1_0::DecoderList {};

TAVO_API const EncoderList& encoders() noexcept;
TAVO_API const DecoderList& decoders() noexcept;

} // namespace TAVO::TAVOXTranscode::private_v1_0

namespace TAVO {

/// Proxy of the "private" object, which has the methods of every object alone.
class TAVO_API Private_v1_0 : public Object_v1_0 {
public:
    ~Private_v1_0() override;

protected:
    friend class ObjectFactory;
    Private_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                 std::shared_ptr<Container> parent, const TAVOXTranscode::private_v1_0::EncoderList& encoders,
                 const TAVOXTranscode::private_v1_0::DecoderList& decoders);
};

/// Serves type "private" of any version, without asking for it.
class TAVO_API PrivateFactory : public ObjectFactory {
public:
    PrivateFactory();

private:
    friend class CoreObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO
