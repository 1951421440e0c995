#include <tavo/cli/values/text_writer.h>

namespace TAVO::cli {

void TextWriter::quote(std::string_view text) {
    constexpr std::string_view marked = "\"\\";
    sink_.write("\"");
    while (!text.empty()) {
        const auto plain = text.substr(0, text.find_first_of(marked));
        forVisiblePieces(plain, [this](std::string_view piece) { sink_.write(piece); });
        text.remove_prefix(plain.size());
        if (!text.empty()) {
            sink_.write("\\");
            sink_.write(text.substr(0, 1));
            text.remove_prefix(1);
        }
    }
    sink_.write("\"");
}

} // namespace TAVO::cli
