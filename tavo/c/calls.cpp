#include <tavo/c/calls.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tavo/c/refusal.h>
#include <tavo/json/json_value.h>
#include <tavo/json/value_output.h>

namespace TAVO::c {

namespace {

using Json = nlohmann::json;
using TAVOXTranscode::MethodRow;

[[noreturn]] void refuse(const std::string& reason) { throw Refusal(TAVO_ERROR_ARGUMENT, reason); }

struct PreparedCall {
    const MethodRow* row;
    std::shared_ptr<Method> method;
};

std::vector<std::span<const std::uint8_t>> blocksOf(const CallInput& input) {
    if (!input.blocks && input.blockCount > 0)
        refuse("'blocks' is NULL, but 'block_count' is not 0");
    std::vector<std::span<const std::uint8_t>> blocks;
    for (const auto& block : std::span(input.blocks, input.blockCount)) {
        if (!block.data && block.size > 0)
            refuse("'blocks[" + std::to_string(blocks.size()) + "].data' is NULL, but its size is not 0");
        blocks.emplace_back(static_cast<const std::uint8_t*>(block.data), block.size);
    }
    return blocks;
}

/// Understands one call at a time.
class CallReader {
public:
    CallReader(const tavo_device& handle, const CallInput& input)
        : objects_(handle.objects)
        , blocks_(blocksOf(input)) {}

    PreparedCall prepare(const Json& call) const {
        if (!call.is_object())
            refuse(std::string("a call must be an object, not ") + call.type_name());
        checkMembers(call);
        const auto objectName = textIn(call, "object");
        const auto methodName = textIn(call, "method");
        const auto fullName = objectName + Container::SEPARATOR + methodName;
        const auto found = objects_.find(objectName);
        if (found == objects_.end())
            throw Refusal(TAVO_ERROR_NOT_FOUND, "the device has no object '" + objectName + "'");
        const auto& object = *found->second;
        const auto& row = rowOf(object, methodName);
        const auto arguments = call.find("arguments");
        auto params = paramsOf(fullName, row, arguments == call.end() ? nullptr : &*arguments);
        return {&row, std::make_shared<Method>(object, methodName, std::move(params))};
    }

private:
    static void checkMembers(const Json& call) {
        constexpr std::array<std::string_view, 3> known = {"arguments", "method", "object"};
        for (const auto& [name, member] : call.items())
            if (std::find(known.begin(), known.end(), name) == known.end())
                refuse("a call has no member '" + name + "'; it has object, method and arguments");
    }

    static std::string textIn(const Json& call, const char* name) {
        const auto member = call.find(name);
        if (member == call.end())
            refuse(std::string("a call needs the member '") + name + "'");
        std::optional<Value> value;
        try {
            value = json::fromJson(*member);
        } catch (const std::invalid_argument&) {
            // It is no text either.
        }
        auto* text = value ? std::get_if<std::string>(&value->data) : nullptr;
        if (!text)
            refuse(std::string("'") + name + "' must be a text, not " + member->type_name());
        return std::move(*text);
    }

    static const MethodRow& rowOf(const Object_v1_0& object, const std::string& method) {
        const auto* row = findMethodRow(object, method);
        if (!object.hasMethod(method))
            throw Refusal(TAVO_ERROR_NOT_FOUND, object.getFullName() + " has no method '" + method + "'");
        if (!row)
            throw Refusal(TAVO_ERROR_NOT_FOUND, "the parameters of " + object.getFullName() + "." + method +
                                                    " are not known to this client");
        return *row;
    }

    /// @param arguments null if there are none.
    dto::Params paramsOf(const std::string& fullName, const MethodRow& row, const Json* arguments) const {
        if (arguments && !arguments->is_object())
            refuse(fullName + ": 'arguments' must be an object, not " + arguments->type_name());
        if (!row.request) {
            if (arguments && !arguments->empty())
                refuse(fullName + " takes no arguments, but '" + arguments->begin().key() + "' is given");
            return {};
        }
        auto request = row.request->create();
        try {
            row.request->fromValue(arguments ? recordOf(*arguments) : Value(Value::Record()), *request);
        } catch (const std::invalid_argument& error) {
            refuse(fullName + ": " + error.what());
        }
        return {std::move(request)};
    }

    /// An object at the top is a record, whatever its members are called.
    Value recordOf(const Json& arguments) const {
        Value::Record record;
        for (const auto& [name, member] : arguments.items())
            record.push_back({name, json::fromJson(member, blocks_, name)});
        return Value(std::move(record));
    }

    const tavo_device::Objects& objects_;
    std::vector<std::span<const std::uint8_t>> blocks_;
};

json::Document documentIn(const CallInput& input, const char* name) {
    require(input.text, name);
    if ((input.flags & ~TAVO_REPLY_BLOCKS) != 0)
        refuse("'flags' is " + std::to_string(input.flags) + ", which has unknown bits");
    try {
        return json::parseDocument(input.text);
    } catch (const std::invalid_argument& error) {
        refuse(std::string("'") + name + "' " + error.what());
    }
}

std::vector<PreparedCall> prepareAll(const tavo_device& handle, const CallInput& input) {
    const auto document = documentIn(input, "calls");
    const auto& root = document.root();
    if (!root.is_array())
        refuse(std::string("'calls' must be an array, not ") + root.type_name());
    const CallReader reader(handle, input);
    std::vector<PreparedCall> calls;
    for (const auto& call : root) {
        try {
            calls.push_back(reader.prepare(call));
        } catch (const Refusal& error) {
            throw Refusal(error.status, "call " + std::to_string(calls.size()) + ": " + error.what(),
                          static_cast<std::int64_t>(calls.size()));
        }
    }
    return calls;
}

/// Writes the answers of executed calls.
class ReplyWriter {
public:
    explicit ReplyWriter(std::uint32_t flags)
        : asBlocks_((flags & TAVO_REPLY_BLOCKS) != 0) {}

    void write(const PreparedCall& call) {
        const auto result = call.method->getResult();
        json_.object([&] {
            json_.key("code").number(result.code);
            json_.key("value");
            if (!call.row->reply || !result.reply) {
                json_.null();
                return;
            }
            const auto view = call.row->reply->view(*result.reply);
            if (!asBlocks_) {
                writeValue(json_, view);
                return;
            }
            writeValue(json_, view, blocks_);
            reply_->records.push_back(result.reply);
        });
    }

    void write(std::span<const PreparedCall> calls) {
        json_.array([&] {
            for (const auto& call : calls)
                write(call);
        });
    }

    std::unique_ptr<tavo_reply> finish() {
        reply_->json = text_.take();
        for (const auto block : blocks_)
            reply_->blocks.push_back({block.data(), block.size()});
        return std::move(reply_);
    }

private:
    bool asBlocks_;
    std::unique_ptr<tavo_reply> reply_ = std::make_unique<tavo_reply>();
    std::vector<ValueView::Bytes> blocks_;
    json::TextDestination text_;
    json::JsonWriter json_{text_, json::JsonWriter::Layout::line};
};

std::unique_ptr<tavo_reply> answersOf(std::span<const PreparedCall> calls, std::uint32_t flags) {
    ReplyWriter writer(flags);
    writer.write(calls);
    return writer.finish();
}

} // namespace

std::unique_ptr<tavo_reply> call(const tavo_device& handle, const CallInput& input) {
    auto& device = requireOpen(handle);
    const auto prepared = CallReader(handle, input).prepare(documentIn(input, "call").root());
    device.call(prepared.method);
    ReplyWriter writer(input.flags);
    writer.write(prepared);
    return writer.finish();
}

void batch(const tavo_device& handle, const CallInput& input, std::unique_ptr<tavo_reply>& reply) {
    auto& device = requireOpen(handle);
    const auto calls = prepareAll(handle, input);
    const auto queue = std::make_shared<MulticallQueue>();
    for (const auto& call : calls)
        queue->add(call.method);
    try {
        if (!calls.empty())
            device.multicall(queue);
    } catch (...) {
        std::size_t answered = 0;
        while (answered < calls.size() && calls[answered].method->isResultSet())
            ++answered;
        if (answered > 0)
            reply = answersOf(std::span(calls).first(answered), input.flags);
        throw;
    }
    reply = answersOf(calls, input.flags);
}

} // namespace TAVO::c
