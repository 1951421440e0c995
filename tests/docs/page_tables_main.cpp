#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include <tests/docs/page_tables.h>
#include <tests/support/all_types.h>

// Rewrites the tables of methods in the documents that are named: see page_tables.h.
namespace {

void rewrite(const docs::fs::path& page) {
    const auto lines = docs::linesOf(page);
    if (lines.empty())
        throw std::runtime_error("cannot be read, or is empty");
    const auto rewritten = docs::rewrittenPage(lines);
    if (rewritten == lines)
        return;
    std::ofstream out(page);
    for (const auto& line : rewritten)
        out << line << '\n';
    if (!out.flush())
        throw std::runtime_error("cannot be written");
    std::cout << page.string() << '\n';
}

} // namespace

int main(int count, char** arguments) {
    if (count < 2) {
        std::cerr << "usage: " << arguments[0] << " PAGE ...\n";
        return 2;
    }
    support::registerAllTypes();
    int status = 0;
    for (int i = 1; i < count; ++i) {
        try {
            rewrite(arguments[i]);
        } catch (const std::exception& fault) {
            std::cerr << arguments[i] << ": " << fault.what() << '\n';
            status = 1;
        }
    }
    return status;
}
