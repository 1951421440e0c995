#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include <bench/rounds.h>

namespace bench {

/// With the few digits that a measurement is worth.
std::string number(double value);
/// "1.5 ms"
std::string duration(double seconds);

enum class Verdict { met, missed, withinNoise, information, notMeasured };

/// One row of the table. A value above its target by no more than the noise of its median is not a miss.
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
    /// Adds and prints the row.
    void add(Row row);
    /// Adds a ratio of two times, and both times.
    void addRatio(const std::string& work, const Comparison& comparison, std::optional<double> target);
    /// Adds how much longer one piece takes in large work than in small. The target is 1.25.
    void addGrowth(const std::string& work, const Comparison& smallToLarge);
    /// Adds a count with an exact target.
    void addCount(const std::string& work, const std::string& unit, double counted, double target);
    /// Adds a figure without a target.
    void addFigure(const std::string& work, const std::string& unit, double value,
                   const std::string& remark = "");
    void addNotMeasured(const std::string& work, const std::string& reason);

    bool missed() const;
    nlohmann::json toJson() const;
    /// The table in Markdown.
    std::string toMarkdown() const;

private:
    std::vector<Row> rows_;
};

} // namespace bench
