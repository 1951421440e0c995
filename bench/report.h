#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include <bench/rounds.h>

namespace bench {

enum class Verdict { met, missed, withinNoise, information, notMeasured };

/// One line of the table. A value above its target by no more than the run's noise is not a miss.
struct Row {
    std::string work;
    std::string unit;
    std::optional<Measured> measured;
    std::optional<double> target;
    std::optional<double> rawSeconds;     ///< of one piece of work
    std::optional<double> librarySeconds; ///< of one piece of work
    std::string remark;

    Verdict verdict() const;
};

class Report {
public:
    /// Adds the row and prints it.
    void add(Row row);
    /// A ratio of two times, with both.
    void addRatio(const std::string& work, const Comparison& comparison, std::optional<double> target);
    /// How much longer one piece of a large work takes than one of a small work: flat within a quarter.
    void addGrowth(const std::string& work, const Comparison& smallToLarge);
    /// Something counted, whose target is exact.
    void addCount(const std::string& work, const std::string& unit, double counted, double target);
    /// For information, without a target.
    void addFigure(const std::string& work, const std::string& unit, double value,
                   const std::string& remark = "");
    void addNotMeasured(const std::string& work, const std::string& reason);

    bool missed() const;
    nlohmann::json toJson() const;
    /// The table for a document.
    std::string toMarkdown() const;

private:
    std::vector<Row> rows_;
};

} // namespace bench
