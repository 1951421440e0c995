#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include <tavo/cli/completion_scripts.h>
#include <tavo/cli/man_page.h>

// Writes the manual pages and the completion scripts of the tool, to be installed with it.
namespace {

namespace fs = std::filesystem;
using namespace TAVO::cli;

void write(const fs::path& path, std::string_view text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
    if (!out.flush())
        throw std::runtime_error("cannot write " + path.string());
}

/// An empty folder: what an earlier version of the tool has left would be installed too.
fs::path emptied(const fs::path& path) {
    fs::remove_all(path);
    fs::create_directories(path);
    return path;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        std::cerr << "usage: " << arguments[0] << " DATE FOLDER-OF-PAGES FOLDER-OF-SCRIPTS\n";
        return 2;
    }
    try {
        const auto pages = emptied(arguments[2]);
        for (const auto& page : manPages(arguments[1]))
            write(pages / (page.name + ".1"), page.text);
        const auto scripts = emptied(arguments[3]);
        for (const auto shell : completedShells) {
            const auto script = completionScript(shell);
            write(scripts / script.fileName, script.text);
        }
    } catch (const std::exception& fault) {
        std::cerr << arguments[0] << ": " << fault.what() << '\n';
        return 1;
    }
    return 0;
}
