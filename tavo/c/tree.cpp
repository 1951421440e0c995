#include <tavo/c/tree.h>

#include <string>
#include <utility>
#include <vector>

#include <tavo/json/callable_methods.h>
#include <tavo/json/json_writer.h>

namespace TAVO::c {

namespace {

using json::JsonWriter;
using VersionQuestion = BoundMethod<dto::Base::VersionReply>;

void writeFields(JsonWriter& json, const std::vector<FieldDescription>& fields) {
    json.array([&] {
        for (const auto& field : fields)
            json.object([&] {
                json.key("name").text(field.name);
                json.key("type").text(field.type);
            });
    });
}

void writeMethods(JsonWriter& json, const Object_v1_0& object) {
    json.array([&] {
        for (const auto* row : json::callableMethods(object))
            json.object([&] {
                using Fields = std::vector<FieldDescription>;
                writeFields(json.key("arguments"), row->request ? row->request->fields() : Fields());
                json.key("name").text(row->name);
                writeFields(json.key("result"), row->reply ? row->reply->fields() : Fields());
            });
    });
}

} // namespace

std::unique_ptr<tavo_reply> tree(const tavo_device& handle) {
    auto& device = requireOpen(handle);
    const auto queue = std::make_shared<MulticallQueue>();
    std::vector<std::shared_ptr<VersionQuestion>> versions;
    for (const auto& [name, object] : handle.objects)
        queue->add(versions.emplace_back(object->getVersionMethod()));
    device.multicall(queue);

    json::TextDestination text;
    JsonWriter json(text, JsonWriter::Layout::line);
    json.array([&] {
        auto version = versions.begin();
        for (const auto& entry : handle.objects) {
            const auto& object = *entry.second;
            json.object([&] {
                writeMethods(json.key("methods"), object);
                json.key("object").exactText(entry.first);
                json.key("type").exactText(object.knownType());
                json.key("version").text(Version((*version)->value().version).text);
            });
            ++version;
        }
    });
    auto reply = std::make_unique<tavo_reply>();
    reply->json = text.take();
    return reply;
}

} // namespace TAVO::c
