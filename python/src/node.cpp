#include "node.h"

#include <algorithm>

#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/object/method_tables.h>
#include <tavo/client/wire/error.h>

#include "failure.h"
#include "values.h"

namespace TAVO::python {

namespace {

std::vector<std::shared_ptr<Object_v1_0>> fixedObjects(const Device& device) {
    return {device.getDevice(), device.getSystem(), device.getPrivate()};
}

std::vector<std::string> namesIn(const Container& container) {
    std::vector<std::string> names;
    for (const auto& child : container.getChildren())
        names.push_back(child->getName());
    return names;
}

bool hasRows(const Object_v1_0& object, const ObjectTable& table) {
    return std::all_of(table.rows.begin(), table.rows.end(), [&](const auto& row) {
        const auto [encoder, decoder] = object.findFunctions(row.name);
        return encoder == row.encoder && decoder == row.decoder;
    });
}

} // namespace

Node::Node(std::shared_ptr<Connection> connection, std::shared_ptr<Object_v1_0> object)
    : connection_(std::move(connection))
    , object_(std::move(object)) {}

std::shared_ptr<Node> Node::find(const std::shared_ptr<Connection>& connection, const std::string& path) {
    const auto& device = connection->device();
    if (auto object = std::dynamic_pointer_cast<Object_v1_0>(device.find(path)))
        return std::make_shared<Node>(connection, std::move(object));
    for (auto& object : fixedObjects(device))
        if (object && object->getName() == path)
            return std::make_shared<Node>(connection, std::move(object));
    return nullptr;
}

std::vector<std::string> Node::topOf(const Connection& connection) {
    const auto& device = connection.device();
    auto names = namesIn(device);
    for (const auto& object : fixedObjects(device))
        if (object && std::find(names.begin(), names.end(), object->getName()) == names.end())
            names.push_back(object->getName());
    return names;
}

std::shared_ptr<Node> Node::child(const std::string& path) const {
    auto object = std::dynamic_pointer_cast<Object_v1_0>(object_->find(path));
    return object ? std::make_shared<Node>(connection_, std::move(object)) : nullptr;
}

std::vector<std::string> Node::children() const { return namesIn(*object_); }

std::pair<std::string, std::string> Node::table() const {
    const ObjectTable* best = nullptr;
    for (const auto& table : objectTables())
        if (table.type == object_->knownType() && hasRows(*object_, table) &&
            (!best || table.rows.size() >= best->rows.size()))
            best = &table;
    if (!best)
        return {"base", "1.0"};
    return {std::string(best->type), std::string(best->version)};
}

std::shared_ptr<Method> Node::prepare(const RemoteMethod& method, const py::tuple& arguments) const {
    if (arguments.size() != method.request.parts.size()) {
        PyErr_Format(PyExc_TypeError, "%s takes %zu arguments, not %zu", method.name.c_str(),
                     method.request.parts.size(), arguments.size());
        throw py::error_already_set();
    }
    dto::Params params;
    if (method.row->request)
        params.request = makeRequest(*method.row->request, method.request, arguments);
    try {
        return TAVOXTranscode::makePooled<Method>(*object_, method.row->name, std::move(params));
    } catch (const Error&) {
        raiseAsPython(std::current_exception());
    }
}

py::object Node::call(const RemoteMethod& method, const py::tuple& arguments) const {
    const auto prepared = prepare(method, arguments);
    ReceivedBlocks blocks;
    connection_->run([&](Device& device) { device.call(prepared); }, blocks);
    if (prepared->returnCode() != 0)
        Failure::refused(prepared->returnCode(), prepared->getFullName()).raise();
    return replyOf(*prepared, method, blocks);
}

py::object replyOf(const Method& executed, const RemoteMethod& method, const ReceivedBlocks& blocks) {
    const auto outcome = executed.getResult();
    if (!method.reply || !outcome.reply)
        return py::none();
    return toPython(method.row->reply->view(*outcome.reply), *method.reply, blocks);
}

} // namespace TAVO::python
