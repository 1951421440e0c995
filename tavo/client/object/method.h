#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/object/container.h>
#include <tavo/client/transcode/packet.h>

namespace TAVO {

class Object_v1_0;

/// One prepared call of a remote method: the object it is addressed to, its parameters, and after execution
/// its result. Building one sends nothing; Device::call and Device::multicall execute it. It may be executed
/// again, the last result wins.
///
/// Methods are held by shared pointers. The container must outlive the Method. One thread at a time.
class TAVO_API Method {
public:
    /// @param name      the remote method's name.
    /// @param container the object that the call is addressed to. On a plain Container, which is no remote
    ///                  object, the Method can be built but not called.
    /// @throws SpecificationError when the object does not list the method or its type has no functions for
    /// it:
    ///         "Could not find Method ID for Method: ", "Could not find Method Encoder for Method: " or
    ///         "Could not find Method Decoder for Method: ", and the name.
    Method(const std::string& name, const Container& container, const dto::Params& params);
    Method(const std::string& name, const Object_v1_0& object, const dto::Params& params);

    const Container& getContainer() const { return container_; }
    std::string getName() const { return name_; }
    /// The container's full name, Container::SEPARATOR, and the method's name.
    std::string getFullName() const;
    const dto::Params& getParams() const { return params_; }
    /// The method's id on its object; 0 on a plain Container.
    std::uint32_t getID() const { return id_; }
    /// Null on a plain Container.
    TAVOXTranscode::Encoder getEncoder() const { return encoder_; }
    /// Null on a plain Container.
    TAVOXTranscode::Decoder getDecoder() const { return decoder_; }
    /// The container as the remote object that it is; null on a plain Container.
    const Object_v1_0* getObject() const { return object_; }

    /// True once a result was set.
    bool isResultSet() const { return resultSet_; }
    /// Shares the reply record; an earlier result is released.
    void setResult(const dto::result& outcome);
    void setResult(dto::result&& outcome);
    /// Code -1 and an empty reply until a result is set. The copy shares the reply record.
    dto::result getResult() const { return result_; }
    /// The status word that the device returned: 0 is success, -1 also means that no result is set. Not an
    /// exception: it is the caller's to look at.
    int returnCode() const { return result_.code; }
    /// Releases the result: the Method is as before its execution, and can be executed again.
    void clearResult();

protected:
    const dto::result& storedResult() const { return result_; }

private:
    Method(const std::string& name, const Container& container, const Object_v1_0* object,
           const dto::Params& params);

    const Container& container_;
    std::string name_;
    std::shared_ptr<const NamePath> path_;
    dto::Params params_;
    bool resultSet_ = false;
    dto::result result_;
    std::uint32_t id_ = 0;
    TAVOXTranscode::Encoder encoder_ = nullptr;
    TAVOXTranscode::Decoder decoder_ = nullptr;
    const Object_v1_0* object_;
};

} // namespace TAVO
