#include <tavo/cli/commands/commands.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tavo/cli/output.h>
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

struct Questions {
    std::shared_ptr<BoundMethod<dto::Base::TypeReply>> type;
    std::shared_ptr<BoundMethod<dto::Base::VersionReply>> version;
    /// Only set if methods are shown.
    std::shared_ptr<BoundMethod<dto::Base::MethodsReply>> methods;
};

using Signatures = std::map<std::string_view, std::string>;

/// Everything the tree shows, fetched in one exchange.
class Answers {
public:
    Answers(Session& session, const Objects& objects, bool withMethods) {
        std::vector<std::shared_ptr<Method>> batch;
        for (const auto& object : objects) {
            auto& questions = questions_[object.get()];
            questions.type = object->getTypeMethod();
            questions.version = object->getVersionMethod();
            batch.insert(batch.end(), {questions.type, questions.version});
            if (withMethods) {
                questions.methods = object->getMethodsMethod();
                batch.push_back(questions.methods);
            }
        }
        session.runAll(batch);
    }

    std::string type(const Object_v1_0& object) const { return of(object).type->value().type; }
    std::string version(const Object_v1_0& object) const {
        return Version(of(object).version->value().version).text;
    }
    bool hasMethods(const Object_v1_0& object) const { return of(object).methods != nullptr; }
    /// Calls `show` with each listed method and its signature, which is empty if this client does not know
    /// it.
    template <class Show>
    void forMethods(const Object_v1_0& object, Show show) const {
        Signatures signatures;
        for (const auto* row : callableMethods(object))
            signatures[row->name] = signatureText(*row);
        const auto result = of(object).methods->getResult();
        for (const auto& method : dto::replyOf<dto::Base::MethodsReply>(result).methods) {
            const auto known = signatures.find(method.name);
            show(method, known == signatures.end() ? std::string() : known->second);
        }
    }

private:
    const Questions& of(const Object_v1_0& object) const { return questions_.at(&object); }

    std::map<const Object_v1_0*, Questions> questions_;
};

Objects membersOf(const Object_v1_0& object) {
    Objects members;
    for (const auto& child : object.getChildren())
        if (auto member = std::dynamic_pointer_cast<Object_v1_0>(child))
            members.push_back(std::move(member));
    return members;
}

void write(JsonWriter& json, const Answers& answers, const Objects& objects);

void write(JsonWriter& json, const Answers& answers, const Object_v1_0& object) {
    json.key("fullName").text(object.getFullName());
    json.key("instanceId").number(object.getInstanceID());
    write(json.key("members"), answers, membersOf(object));
    if (answers.hasMethods(object))
        json.key("methods").array([&] {
            answers.forMethods(object, [&](const auto& method, const std::string& signature) {
                json.object([&] {
                    json.key("id").number(method.id);
                    json.key("name").text(method.name);
                    json.key("signature");
                    if (signature.empty())
                        json.null();
                    else
                        json.text(signature);
                });
            });
        });
    json.key("name").text(object.getName());
    json.key("type").text(answers.type(object));
    json.key("version").text(answers.version(object));
}

void write(JsonWriter& json, const Answers& answers, const Objects& objects) {
    json.array([&] {
        for (const auto& object : objects)
            json.object([&] { write(json, answers, *object); });
    });
}

class Drawing {
public:
    Drawing(TextWriter& text, const Answers& answers, const Strokes& strokes)
        : text_(text)
        , answers_(answers)
        , strokes_(strokes) {}

    void draw(const Objects& objects, const std::string& margin) {
        for (const auto& object : objects)
            draw(*object, margin, object == objects.back());
    }

private:
    void draw(const Object_v1_0& object, const std::string& margin, bool isLast) {
        text_.print("{}{}{}  {} {}  #{}\n", margin, isLast ? strokes_.lastBranch : strokes_.branch,
                    object.getName(), answers_.type(object), answers_.version(object),
                    object.getInstanceID());
        const auto inner = margin + (isLast ? strokes_.gap : strokes_.trunk);
        const auto members = membersOf(object);
        if (answers_.hasMethods(object))
            drawMethods(object, inner + (members.empty() ? "  " : strokes_.trunk));
        draw(members, inner);
    }

    void drawMethods(const Object_v1_0& object, const std::string& margin) {
        answers_.forMethods(object, [&](const auto& method, const std::string& signature) {
            if (signature.empty())
                text_.print("{}{}  (not known to this client)  method {}\n", margin, method.name, method.id);
            else
                text_.print("{}{}  method {}\n", margin, signature, method.id);
        });
    }

    TextWriter& text_;
    const Answers& answers_;
    const Strokes& strokes_;
};

struct TreeOptions {
    bool methods = false;

    void describe(OptionList& list) {
        list.add("--methods", methods, "Show the methods of every object, with their parameters");
    }
};

void showTree(Session& session, Output& output, const TreeOptions& options) {
    const auto objects = session.objects();
    const Answers answers(session, objects, options.methods);
    Objects roots;
    for (const auto& object : objects)
        if (!object->getParent())
            roots.push_back(object);
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("address").text(session.address());
                write(json.key("objects"), answers, roots);
            });
        },
        [&](TextWriter& text) {
            text.print("{}\n", session.address());
            Drawing(text, answers, localeIsUtf8() ? lineStrokes : plainStrokes).draw(roots, "");
        });
}

} // namespace

std::vector<Command> treeCommands() {
    return {command("tree", "Draw the device's objects: name, type, version, #instance id", showTree)};
}

} // namespace TAVO::cli
