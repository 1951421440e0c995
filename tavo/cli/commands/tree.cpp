#include <tavo/cli/commands/commands.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/prepared_call.h>

namespace TAVO::cli {

namespace {

struct Strokes {
    const char* branch;
    const char* lastBranch;
    const char* trunk;
    const char* gap;
};

constexpr Strokes plainStrokes{"|-- ", "`-- ", "|   ", "    "};
constexpr Strokes lineStrokes{"\xe2\x94\x9c\xe2\x94\x80\xe2\x94\x80 ",
                              "\xe2\x94\x94\xe2\x94\x80\xe2\x94\x80 ", "\xe2\x94\x82   ", "    "};

struct MethodNote {
    std::string name;
    std::uint32_t id = 0;
    /// Empty where this client does not know the method.
    std::string signature;
};

struct Node {
    std::string name;
    std::string fullName;
    std::string type;
    std::string version;
    std::uint32_t id = 0;
    std::vector<MethodNote> methods;
    std::vector<Node> members;
};

struct Questions {
    std::shared_ptr<BoundMethod<dto::Base::TypeReply>> type;
    std::shared_ptr<BoundMethod<dto::Base::VersionReply>> version;
    std::shared_ptr<BoundMethod<dto::Base::MethodsReply>> methods;
};

using Answers = std::map<const Object_v1_0*, Questions>;

/// What the tree shows of all objects, asked for in one exchange.
Answers ask(Session& session, const Objects& objects) {
    Answers answers;
    std::vector<std::shared_ptr<Method>> batch;
    for (const auto& object : objects) {
        const Questions questions{object->getTypeMethod(), object->getVersionMethod(),
                                  object->getMethodsMethod()};
        batch.insert(batch.end(), {questions.type, questions.version, questions.methods});
        answers[object.get()] = questions;
    }
    session.run(batch);
    for (const auto& method : batch)
        requireSuccess(*method);
    return answers;
}

std::vector<MethodNote> notesOf(const Object_v1_0& object, const dto::Base::MethodsReply& listed) {
    std::map<std::string, std::string, std::less<>> signatures;
    for (const auto* row : callableMethods(object))
        signatures[std::string(row->name)] = signatureText(*row);
    std::vector<MethodNote> notes;
    for (const auto& method : listed.methods)
        notes.push_back({method.name, method.id, signatures[method.name]});
    return notes;
}

Node makeNode(const std::shared_ptr<Object_v1_0>& object, const Answers& answers) {
    const auto& answer = answers.at(object.get());
    Node node{object->getName(),
              object->getFullName(),
              answer.type->value().type,
              Version(answer.version->value().version).text,
              object->getInstanceID(),
              notesOf(*object, answer.methods->value()),
              {}};
    for (const auto& child : object->getChildren())
        if (const auto member = std::dynamic_pointer_cast<Object_v1_0>(child))
            node.members.push_back(makeNode(member, answers));
    return node;
}

nlohmann::json documentOf(const Node& node, bool withMethods) {
    auto members = nlohmann::json::array();
    for (const auto& member : node.members)
        members.push_back(documentOf(member, withMethods));
    nlohmann::json document = {{"name", node.name},       {"fullName", node.fullName}, {"type", node.type},
                               {"version", node.version}, {"instanceId", node.id},     {"members", members}};
    if (withMethods) {
        document["methods"] = nlohmann::json::array();
        for (const auto& method : node.methods)
            document["methods"].push_back(
                {{"name", method.name},
                 {"id", method.id},
                 {"signature",
                  method.signature.empty() ? nlohmann::json() : nlohmann::json(method.signature)}});
    }
    return document;
}

std::string methodText(const MethodNote& method) {
    if (method.signature.empty())
        return fmt::format("{}  (not known to this client)  method {}", method.name, method.id);
    return fmt::format("{}  method {}", method.signature, method.id);
}

class Drawing {
public:
    Drawing(bool withMethods, const Strokes& strokes)
        : withMethods_(withMethods)
        , strokes_(strokes) {}

    void draw(const std::vector<Node>& nodes, const std::string& margin) {
        for (const auto& node : nodes)
            draw(node, margin, &node == &nodes.back());
    }

    std::string text;

private:
    void draw(const Node& node, const std::string& margin, bool isLast) {
        text += margin + (isLast ? strokes_.lastBranch : strokes_.branch) +
                printable(fmt::format("{}  {} {}  #{}", node.name, node.type, node.version, node.id)) + "\n";
        const auto inner = margin + (isLast ? strokes_.gap : strokes_.trunk);
        if (withMethods_)
            for (const auto& method : node.methods)
                text += inner + (node.members.empty() ? "  " : strokes_.trunk) +
                        printable(methodText(method)) + "\n";
        draw(node.members, inner);
    }

    bool withMethods_;
    const Strokes& strokes_;
};

void showTree(Session& session, Output& output, bool withMethods) {
    const auto objects = session.objects();
    const auto answers = ask(session, objects);
    std::vector<Node> roots;
    for (const auto& object : objects)
        if (!object->getParent())
            roots.push_back(makeNode(object, answers));

    auto members = nlohmann::json::array();
    for (const auto& root : roots)
        members.push_back(documentOf(root, withMethods));
    Drawing drawing(withMethods, localeIsUtf8() ? lineStrokes : plainStrokes);
    drawing.draw(roots, "");
    output.show({{"address", session.address()}, {"objects", members}},
                session.address() + "\n" + drawing.text);
}

} // namespace

void addTree(CLI::App& tool, Program& program) {
    auto* command =
        tool.add_subcommand("tree", "Draw the device's objects: name, type, version, #instance id");
    const auto withMethods = std::make_shared<bool>(false);
    command->add_flag("--methods", *withMethods, "Show the methods of every object, with their parameters");
    command->callback([&program, withMethods] {
        program.action = [withMethods](Session& session, Output& output) {
            showTree(session, output, *withMethods);
        };
    });
}

} // namespace TAVO::cli
