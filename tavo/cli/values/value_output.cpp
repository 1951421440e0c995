#include <tavo/cli/values/value_output.h>

namespace TAVO::cli {

namespace {

bool isRecord(const ValueView& value) { return std::holds_alternative<ValueView::Record>(value.data); }

/// Writes a value nested in another.
void writeInner(TextWriter& text, const ValueView& value) {
    text.write(isRecord(value) ? "{" : "");
    writeValue(text, value);
    text.write(isRecord(value) ? "}" : "");
}

struct TextForm {
    TextWriter& text;

    void operator()(bool value) const { text.write(value ? "true" : "false"); }
    void operator()(std::int64_t value) const { text.print("{}", value); }
    void operator()(std::uint64_t value) const { text.print("{}", value); }
    void operator()(std::string_view value) const { text.quote(value); }
    void operator()(ValueView::Bytes value) const {
        for (const auto byte : value)
            text.print("{:02x}", byte);
    }
    void operator()(const ValueView::List& value) const {
        text.write("[");
        for (std::size_t i = 0; i < value.size; ++i) {
            text.write(i == 0 ? "" : ", ");
            writeInner(text, value[i]);
        }
        text.write("]");
    }
    void operator()(const ValueView::Record& value) const {
        for (std::size_t field = 0; field < value.fields.size(); ++field) {
            text.print("{}{}=", field == 0 ? "" : " ", value.fields[field].name);
            writeInner(text, value[field]);
        }
    }
};

} // namespace

void writeValue(TextWriter& text, const ValueView& value) { std::visit(TextForm{text}, value.data); }

void writeFields(TextWriter& text, const ValueView::Record& record) {
    for (std::size_t field = 0; field < record.fields.size(); ++field) {
        const auto value = record[field];
        text.print("  {}", record.fields[field].name);
        const auto* list = std::get_if<ValueView::List>(&value.data);
        if (!list || list->size == 0 || !isRecord((*list)[0])) {
            text.write(" = ");
            writeInner(text, value);
            text.write("\n");
            continue;
        }
        text.write(":\n");
        for (std::size_t i = 0; i < list->size; ++i) {
            text.write("    - ");
            writeValue(text, (*list)[i]);
            text.write("\n");
        }
    }
}

} // namespace TAVO::cli
