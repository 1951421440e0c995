#include <tavo/client/transcode/internal/brief_methods.h>

#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode {

namespace {

using dto::Base::MethodsReply;

/// The part of an entry that travels.
struct BriefMethod {
    std::string name;
    std::uint32_t id = 0;
    static constexpr auto fields() {
        return std::tuple{dto::Field{"name", &BriefMethod::name}, dto::Field{"id", &BriefMethod::id}};
    }
};

struct BriefMethods {
    std::vector<BriefMethod> methods;
    static constexpr auto fields() { return std::tuple{dto::Field{"methods", &BriefMethods::methods}}; }
};

const MethodsReply& methodsIn(const dto::reply_packet& packet) {
    return dynamic_cast<const MethodsReply&>(packet);
}

void write(TAVOX::OutputStream& out, const dto::reply_packet& packet) {
    const auto& methods = methodsIn(packet).methods;
    out.writeUInt32(static_cast<std::uint32_t>(methods.size()));
    for (const auto& method : methods) {
        writeValue(out, method.name);
        writeValue(out, method.id);
    }
}

void read(TAVOX::InputStream& in, dto::reply_packet& packet) {
    readList(in, dynamic_cast<MethodsReply&>(packet).methods, smallestSize<BriefMethod>(),
             [&in](dto::Base::Method& method) {
                 readValue(in, method.name);
                 readValue(in, method.id);
                 method.signature.clear();
             });
}

void fromValue(const Value& value, dto::reply_packet& packet) {
    BriefMethods brief;
    recordFromValue("", value, brief);
    auto& methods = dynamic_cast<MethodsReply&>(packet).methods;
    methods.clear();
    for (auto& method : brief.methods)
        methods.push_back({std::move(method.name), method.id, {}});
}

ValueView viewEntry(const void* list, std::size_t index) {
    constexpr auto travelling = std::span(fieldViews<dto::Base::Method>).first<2>();
    return {
        ValueView::Record{&(*static_cast<const std::vector<dto::Base::Method>*>(list))[index], travelling}};
}

ValueView viewMethods(const void* record) {
    const auto& methods = static_cast<const MethodsReply*>(record)->methods;
    return {ValueView::List{&methods, methods.size(), viewEntry}};
}

constexpr ValueView::Field fieldView{"methods", viewMethods};

} // namespace

dto::result decodeBriefMethods(TAVOX::InputStream& in) {
    const auto code = in.readInt32();
    auto reply = std::make_shared<MethodsReply>();
    read(in, *reply);
    return {code, std::move(reply)};
}

constinit const ReplyDescription briefMethodsDescription{
    decodeBriefMethods,
    +[]() -> std::shared_ptr<dto::reply_packet> { return std::make_shared<MethodsReply>(); },
    write,
    read,
    fromValue,
    describeFields<BriefMethods>,
    +[](const dto::reply_packet& packet) {
        return ValueView{ValueView::Record{&methodsIn(packet), std::span(&fieldView, 1)}};
    },
};

} // namespace TAVO::TAVOXTranscode
