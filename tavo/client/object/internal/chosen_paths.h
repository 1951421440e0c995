#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TAVO {

/// Which objects of a tree are wanted: all, or those of some paths, what leads to them and what is below
/// them.
class ChosenPaths {
public:
    ChosenPaths() = default;
    /// @param paths full names; none for all.
    explicit ChosenPaths(std::vector<std::string> paths)
        : paths_(std::move(paths)) {}

    bool areAll() const { return paths_.empty(); }
    /// Whether it is wanted with all that is below it.
    bool includeWhole(std::string_view path) const {
        for (const auto& chosen : paths_)
            if (isWithin(path, chosen))
                return true;
        return areAll();
    }
    bool includes(std::string_view path) const {
        for (const auto& chosen : paths_)
            if (isWithin(chosen, path))
                return true;
        return includeWhole(path);
    }

private:
    /// Whether it is that node or below it.
    static bool isWithin(std::string_view path, std::string_view node) {
        return path.starts_with(node) && (path.size() == node.size() || path[node.size()] == '.');
    }

    std::vector<std::string> paths_;
};

} // namespace TAVO
