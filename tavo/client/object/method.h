#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <tavo/client/export.h>
#include <tavo/client/object/container.h>
#include <tavo/client/transcode/packet.h>

namespace TAVO {

class Object_v1_0;

/// One prepared call of a remote method: the object, the parameters, and after execution the result. Get one
/// from an operation of a proxy or from Object_v1_0::make, and hand it to Device::call, or with others to
/// Device::multicall. Building one sends nothing. It can be executed again; the new result replaces the old.
///
/// Hold Methods by shared pointers. A Method refers to its object without keeping it alive: keep the device.
/// One thread at a time, the device's.
class TAVO_API Method {
public:
    /// Prepares a call; BoundMethod is the class for methods with a reply.
    /// @param name      the remote method's name.
    /// @param container the object to call, which must outlive the Method. A Method on a plain Container,
    ///        which is no remote object, can be built but not executed.
    /// @param params    the parameters; copies share the record, which the Method does not change.
    /// @throws SpecificationError when the object does not list the method, or its type has no functions for
    ///         it: "Could not find Method ID for Method: ", "Could not find Method Encoder for Method: " or
    ///         "Could not find Method Decoder for Method: ", and the name.
    Method(const std::string& name, const Container& container, const dto::Params& params);
    /// The same for a remote object.
    Method(const std::string& name, const Object_v1_0& object, const dto::Params& params);
    /// The same, taking over the request record; `name` may be gone when this returns.
    Method(const Object_v1_0& object, std::string_view name, dto::Params&& params);

    /// The object that the call goes to. Dangling once that has been destroyed.
    const Container& getContainer() const { return container_; }
    /// The name of the method alone, such as "set".
    std::string getName() const;
    /// The full name of the object, Container::SEPARATOR, and the name of the method: "bench.lamp.set". Can
    /// be asked for also after the object has been destroyed.
    std::string getFullName() const;
    /// The parameters; empty for a method that takes none.
    const dto::Params& getParams() const { return params_; }
    /// The id of the method on its object; 0 on a plain Container.
    std::uint32_t getID() const { return target_->id; }
    /// The function that writes the parameters; null on a plain Container.
    TAVOXTranscode::Encoder getEncoder() const { return target_->encoder; }
    /// The function that reads the result; null on a plain Container.
    TAVOXTranscode::Decoder getDecoder() const { return target_->decoder; }
    /// The object that the call goes to, as a remote object; null on a plain Container.
    const Object_v1_0* getObject() const { return target_->object; }

    /// Whether there is a result: the Method was executed, or setResult() called.
    bool isResultSet() const { return resultSet_; }
    /// Stores the result in place of an earlier one, and shares its reply record. Device::call does this;
    /// call it yourself only to play the device.
    void setResult(const dto::result& outcome);
    /// The same, taking over the reply record.
    void setResult(dto::result&& outcome);
    /// The whole result: code -1 and an empty reply while there is none. Shares the reply record.
    dto::result getResult() const { return result_; }
    /// The method's own status as the device returned it: 0 is success; -1 also means that there is no result
    /// yet. No call throws because of it, except for Device::execute and Device::value.
    int returnCode() const { return result_.code; }
    /// Drops the result: the Method is as before its execution, and can be executed again.
    void clearResult();

protected:
    /// The result without a copy; changes with the next execution.
    const dto::result& storedResult() const { return result_; }

private:
    friend class Object_v1_0;
    struct Target;

public:
    /// For Object_v1_0::make().
    Method(const Object_v1_0& object, std::shared_ptr<const Target> target, dto::Params&& params);

private:
    /// The remote method. Methods that call it share this; it outlives the object for the sake of its name.
    struct Target {
        const Object_v1_0* object = nullptr; ///< null on a plain Container
        std::uint32_t id = 0;
        TAVOXTranscode::Encoder encoder = nullptr;
        TAVOXTranscode::Decoder decoder = nullptr;
        std::shared_ptr<const NamePath> path; ///< ends with the method's name
    };

    const Container& container_;
    std::shared_ptr<const Target> target_;
    dto::Params params_;
    bool resultSet_ = false;
    dto::result result_;
};

} // namespace TAVO
