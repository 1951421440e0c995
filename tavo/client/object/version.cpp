#include <tavo/client/object/version.h>

#include <cctype>
#include <initializer_list>
#include <locale>
#include <ostream>
#include <sstream>

#include <tavo/client/wire/error.h>

namespace TAVO {

namespace {

std::string textOf(const Version& version) {
    std::string text;
    for (const auto part : {version.major, version.minor, version.bugfix}) {
        if (part == Version::DontCare)
            break;
        text += (text.empty() ? "" : ".") + std::to_string(static_cast<std::uint32_t>(part));
    }
    return text;
}

void skipSeparator(std::istringstream& in) {
    const bool afterWhiteSpace = std::isspace(in.peek()) != 0;
    in >> std::ws;
    if (!(afterWhiteSpace && std::isdigit(in.peek())))
        in.get();
}

} // namespace

Version::Version()
    : text("0.0.0")
    , major(0)
    , minor(0)
    , bugfix(0) {}

Version::Version(const std::string& versionText)
    : text(versionText)
    , major(0)
    , minor(DontCare)
    , bugfix(DontCare) {
    initFromString();
}

Version::Version(const dto::Base::Version& version)
    : major(static_cast<std::int32_t>(version.major))
    , minor(static_cast<std::int32_t>(version.minor))
    , bugfix(static_cast<std::int32_t>(version.bugfix)) {
    text = textOf(*this);
}

void Version::initFromString() {
    std::istringstream in(text);
    in.imbue(std::locale::classic()); // the application's locale may read "1.2" as one grouped number
    minor = bugfix = DontCare;
    for (auto* part : {&major, &minor, &bugfix}) {
        if (part != &major)
            skipSeparator(in);
        if (!(in >> *part))
            throw SpecificationError("Could not parse version string: " + text);
        if (in.eof())
            return;
    }
}

bool Version::operator==(const Version& other) const {
    if (major != other.major)
        return false;
    if (minor == DontCare || other.minor == DontCare)
        return true;
    if (minor != other.minor)
        return false;
    return bugfix == DontCare || other.bugfix == DontCare || bugfix == other.bugfix;
}

bool Version::operator<(const Version& other) const {
    if (major != other.major)
        return major < other.major;
    if (minor == DontCare || other.minor == DontCare)
        return true;
    if (minor != other.minor)
        return minor < other.minor;
    return bugfix == DontCare || other.bugfix == DontCare || bugfix < other.bugfix;
}

std::ostream& operator<<(std::ostream& out, const Version& version) { return out << version.text; }

} // namespace TAVO
