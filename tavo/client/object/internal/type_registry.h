#pragma once

#include <span>
#include <vector>

#include <tavo/client/object/method_tables.h>

namespace TAVO {

/// The methods of all types that have a TypeFactory, and of those that no factory serves. Changed by the
/// constructors and destructors of factories alone, which are under the same rule as the map of factories.
class TypeRegistry {
public:
    TypeRegistry();

    void enter(const ObjectTable& table, const void* owner);
    void remove(const void* owner);
    std::span<const ObjectTable> tables() const noexcept { return tables_; }
    /// Of one owner's tables the first that serves, of several owners' the last one's.
    const ObjectTable* find(std::string_view type, const Version& version) const;

private:
    std::vector<ObjectTable> tables_;
    std::vector<const void*> owners_; ///< of the tables at the same places
};

} // namespace TAVO
