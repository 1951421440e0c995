#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tavo/client/object/object.h>

#include "connection.h"
#include "remote_method.h"

namespace TAVO::python {

/// A remote object.
class Node {
public:
    Node(std::shared_ptr<Connection> connection, std::shared_ptr<Object_v1_0> object);

    /// The object of that full name, the three fixed ones included; empty if there is none.
    static std::shared_ptr<Node> find(const std::shared_ptr<Connection>& connection, const std::string& path);
    /// The names at the top of the device, then those of the fixed objects.
    static std::vector<std::string> topOf(const Connection& connection);

    std::shared_ptr<Node> child(const std::string& path) const;
    std::vector<std::string> children() const;
    const std::shared_ptr<Connection>& connection() const { return connection_; }
    const std::shared_ptr<Object_v1_0>& object() const { return object_; }
    /// Type and version of the table that its methods are in; "base" for a type that the library does not
    /// know.
    std::pair<std::string, std::string> table() const;

    /// A call that has not been sent.
    std::shared_ptr<Method> prepare(const RemoteMethod& method, const py::tuple& arguments) const;
    /// Calls the method; returns what Python has for its reply.
    py::object call(const RemoteMethod& method, const py::tuple& arguments) const;

private:
    std::shared_ptr<Connection> connection_;
    std::shared_ptr<Object_v1_0> object_;
};

/// What Python has for the reply of an executed call with return code 0.
py::object replyOf(const Method& executed, const RemoteMethod& method, const ReceivedBlocks& blocks);

} // namespace TAVO::python
