#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/client/transcode/value.h>
#include <tavo/trace/names.h>

/// What a trace must not give away: passwords, lock ids, and the answer to a login's challenge, from which
/// the password can be guessed.
namespace TAVO::trace {

bool isSecretField(std::string_view name);

/// What takes the place of each secret byte.
inline constexpr std::uint8_t blank = '*';

/// Finds the secret bytes of one record while it passes.
class SecretFields {
public:
    /// Nothing is secret.
    SecretFields() = default;
    /// @param headBytes bytes before the first field.
    SecretFields(const std::vector<FieldDescription>& fields, std::uint32_t headBytes);
    /// Everything behind the head is secret.
    static SecretFields everything(std::uint32_t headBytes);

    /// How many of the next bytes, at least one and at most all given, are secret or are not, one like the
    /// other. Takes these bytes.
    struct Run {
        std::size_t length;
        bool isSecret;
    };
    Run next(Bytes bytes);
    bool isNothing() const { return steps_.empty(); }

private:
    struct Step {
        enum class Kind { fixed, sized, rest } kind = Kind::fixed;
        std::uint32_t bytes = 0;
        bool isSecret = false;
    };

    std::vector<Step> steps_;
    std::size_t step_ = 0;
    /// Of the current step.
    std::uint32_t done_ = 0;
    std::uint32_t size_ = 0;
    bool isInContent_ = false;
};

/// Those of the parameters of the call. All bytes of a method of the device object that nobody has named: it
/// may be the one that takes the lock.
SecretFields secretParameters(const Names& names, const CallId& call);
/// Those of its result; for such a method all but the return code.
SecretFields secretResult(const Names& names, const CallId& call);

} // namespace TAVO::trace
