#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TAVO::cli {

/// Writes a page in the mdoc language. Texts are escaped: nothing in them is taken for markup.
class Mdoc {
public:
    /// A macro with arguments that are markup themselves.
    void macro(std::string_view line);
    /// A paragraph's text; lines are filled anew.
    void text(std::string_view text);
    /// Lines that stay as they are.
    void literal(const std::vector<std::string>& lines);
    /// A section.
    void section(std::string_view name) { macro("Sh " + std::string(name)); }

    /// A text as one argument of a macro, never a macro itself.
    static std::string argument(std::string_view text);

    const std::string& page() const { return page_; }

private:
    std::string page_;
};

} // namespace TAVO::cli
