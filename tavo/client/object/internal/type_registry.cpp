#include <tavo/client/object/internal/type_registry.h>

#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_status_tables.h>

namespace TAVO {

TypeRegistry::TypeRegistry() {
    enter({"base", "1.0", TAVOXTranscode::base_v1_0::rows(), nullptr}, nullptr);
    enter({"headerStatus", "1.1", TAVOXTranscode::headerStatus_v1_1::rows(), nullptr}, nullptr);
}

void TypeRegistry::enter(const ObjectTable& table, const void* owner) {
    tables_.push_back(table);
    owners_.push_back(owner);
}

void TypeRegistry::remove(const void* owner) {
    for (auto i = tables_.size(); i-- > 0;)
        if (owners_[i] == owner) {
            tables_.erase(tables_.begin() + static_cast<std::ptrdiff_t>(i));
            owners_.erase(owners_.begin() + static_cast<std::ptrdiff_t>(i));
        }
}

const ObjectTable* TypeRegistry::find(std::string_view type, const Version& version) const {
    const ObjectTable* found = nullptr;
    const void* owner = nullptr;
    for (std::size_t i = 0; i < tables_.size(); ++i) {
        const auto& table = tables_[i];
        const bool serves = table.type == type && (!table.serves || table.serves(version));
        if (serves && (!found || owners_[i] != owner)) {
            found = &table;
            owner = owners_[i];
        }
    }
    return found;
}

} // namespace TAVO
