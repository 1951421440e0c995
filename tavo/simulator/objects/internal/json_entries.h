#pragma once

#include <set>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

namespace TAVO::simulator {

/// Takes the entries of a JSON object one by one and rejects those left over.
class JsonEntries {
public:
    /// @throws std::invalid_argument if it is not a JSON object.
    explicit JsonEntries(const nlohmann::json& source)
        : source_(source) {
        if (!source_.is_object())
            throw std::invalid_argument("expected {...}");
    }

    /// The entry with this name, or `otherwise`. @param expected what it must be, for the message.
    template <class T>
    T take(const std::string& name, const char* expected, T otherwise) {
        const auto* entry = find(name);
        return entry ? converted<T>(*entry, name, expected) : otherwise;
    }
    template <class T>
    T require(const std::string& name, const char* expected) {
        const auto* entry = find(name);
        if (!entry)
            throw std::invalid_argument("'" + name + "' is missing: expected " + expected);
        return converted<T>(*entry, name, expected);
    }
    /// Null if there is none.
    const nlohmann::json* find(const std::string& name) {
        taken_.insert(name);
        const auto found = source_.find(name);
        return found == source_.end() ? nullptr : &*found;
    }

    /// @throws std::invalid_argument that names the first entry not taken.
    void finish() const {
        for (const auto& [name, entry] : source_.items())
            if (!taken_.contains(name))
                throw std::invalid_argument("'" + name + "' is not known here");
    }

private:
    template <class T>
    static T converted(const nlohmann::json& entry, const std::string& name, const char* expected) {
        try {
            constexpr bool numeric = !std::is_same_v<T, bool> && !std::is_same_v<T, std::string>;
            if (!numeric || entry.is_number_integer())
                return entry.get<T>();
        } catch (const nlohmann::json::exception&) {
        }
        throw std::invalid_argument("'" + name + "' is " + entry.dump() + ": expected " + expected);
    }

    const nlohmann::json& source_;
    std::set<std::string> taken_;
};

} // namespace TAVO::simulator
