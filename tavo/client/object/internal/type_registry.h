#pragma once

#include <span>
#include <vector>

#include <tavo/client/object/method_tables.h>

namespace TAVO {

/// The methods of all types that have a TypeFactory, and "base" and "headerStatus", which have none. Only the
/// constructors and destructors of factories change it; like the map of factories it has no lock.
class TypeRegistry {
public:
    TypeRegistry();

    void enter(const ObjectTable& table, const void* owner);
    void remove(const void* owner);
    std::span<const ObjectTable> tables() const noexcept { return tables_; }
    /// The first table that serves, of the last owner that has one.
    const ObjectTable* find(std::string_view type, const Version& version) const;

private:
    std::vector<ObjectTable> tables_;
    std::vector<const void*> owners_; ///< owners_[i] is the owner of tables_[i]
};

} // namespace TAVO
