#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/transcode/base_records.h>
#include <tavo/client/version_number.h>

namespace TAVO {

/// The version of a remote object, as a text and up to three numbers.
///
/// A part that the text does not hold is `DontCare` and matches every value. The comparisons treat it
/// asymmetrically on purpose: "1" and "1.5" are equal, and each is also less than the other. Factories choose
/// proxy classes with `<` and `==`.
class TAVO_API Version {
public:
    static constexpr std::int32_t DontCare = -1;

    /// "0.0.0"
    Version();
    /// Parses the text, see initFromString().
    /// @throws SpecificationError "Could not parse version string: " and the text.
    Version(const std::string& text);
    /// The same, so that versions compare with text literals: `version == "1.1"`.
    Version(const char* versionText)
        : Version(std::string(versionText)) {}
    Version(std::nullptr_t) = delete;
    /// The numbers of a reply, as they are; the text is made from them and ends before the first part that is
    /// DontCare (0xFFFFFFFF on the wire): 1, 1, DontCare is "1.1".
    Version(const dto::Base::Version& version);

    /// Parses `text` again: a number, then up to twice a separator (white space, or any one character) and a
    /// number. White space before numbers and separators is skipped, anything after the third number ignored.
    /// @throws SpecificationError "Could not parse version string: " and the text.
    void initFromString();

    /// The text as it was given.
    operator std::string() const { return text; }

    bool operator==(const Version& other) const;
    bool operator!=(const Version& other) const { return !(*this == other); }
    bool operator<(const Version& other) const;
    bool operator<=(const Version& other) const { return *this < other || *this == other; }
    bool operator>(const Version& other) const { return !(*this < other) && !(*this == other); }
    bool operator>=(const Version& other) const { return !(*this < other); }

    std::string text;
    std::int32_t major;
    std::int32_t minor;
    std::int32_t bugfix;
};

/// Prints the text.
TAVO_API std::ostream& operator<<(std::ostream& out, const Version& version);

} // namespace TAVO
