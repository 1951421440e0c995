#include <tavo/cli/door/told_place.h>

#include <exception>

namespace TAVO::cli {

void tellIfAnybodyReads(Output& output, const std::string& line) {
    try {
        output.write(line + "\n");
        output.finish();
    } catch (const std::exception&) { // nobody can be told
    }
}

} // namespace TAVO::cli
