#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/transcode/base_records.h>
#include <tavo/client/version_number.h>

namespace TAVO {

/// The version of a remote type: a text, and up to three numbers. Factories compare it to choose the proxy
/// class of an object.
///
/// A part that the text leaves out is `DontCare` and equals every value. So this is no order: "1" equals
/// "1.5", and each of the two is also less than the other. Do not sort by it.
///
/// @code
/// if (object->version() == "1.1") // also true for "1" and "1.1.7"
///     use11(*object);
/// @endcode
class TAVO_API Version {
public:
    /// Stands for a part that the version leaves open.
    static constexpr std::int32_t DontCare = -1;

    /// "0.0.0"
    Version();
    /// Parses the text, as initFromString() does.
    /// @throws SpecificationError "Could not parse version string: " and the text.
    Version(const std::string& text);
    /// The same, so that versions compare with literals: `version == "1.1"`.
    Version(const char* versionText)
        : Version(std::string(versionText)) {}
    Version(std::nullptr_t) = delete;
    /// The numbers of a reply; 0xFFFFFFFF on the wire is DontCare. The text is made from them and ends before
    /// the first DontCare: 1, 1, DontCare is "1.1".
    Version(const dto::Base::Version& version);

    /// Sets the numbers from `text`: one to three numbers with separators between them, each of which is
    /// white space or any one character. White space around separators is skipped, and so is what follows the
    /// third number.
    /// @throws SpecificationError "Could not parse version string: " and the text.
    void initFromString();

    /// The text, not normalised.
    operator std::string() const { return text; }

    /// Compares part by part. The first DontCare on either side ends it: equal so far is equal.
    bool operator==(const Version& other) const;
    bool operator!=(const Version& other) const { return !(*this == other); }
    /// Compares part by part. The first part that differs decides; true when a DontCare on either side comes
    /// first.
    bool operator<(const Version& other) const;
    bool operator<=(const Version& other) const { return *this < other || *this == other; }
    bool operator>(const Version& other) const { return !(*this < other) && !(*this == other); }
    bool operator>=(const Version& other) const { return !(*this < other); }

    std::string text;    ///< as it was given, or made from the numbers of a reply
    std::int32_t major;  ///< the first number
    std::int32_t minor;  ///< the second number, or DontCare
    std::int32_t bugfix; ///< the third number, or DontCare
};

/// Prints the text.
TAVO_API std::ostream& operator<<(std::ostream& out, const Version& version);

} // namespace TAVO
