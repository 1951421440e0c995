#include <bench/report.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace bench {

std::string number(double value) {
    return value >= 100 ? fmt::format("{:.0f}", value) : fmt::format("{:.3g}", value);
}

std::string duration(double seconds) {
    if (seconds >= 1e-3)
        return number(seconds * 1e3) + " ms";
    return seconds >= 1e-6 ? number(seconds * 1e6) + " us" : number(seconds * 1e9) + " ns";
}

namespace {

const char* textOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::met:
        return "met";
    case Verdict::missed:
        return "MISSED";
    case Verdict::withinNoise:
        return "met within noise";
    case Verdict::information:
        return "-";
    case Verdict::notMeasured:
        break;
    }
    return "not measured";
}

/// The columns of a row as text.
struct Line {
    explicit Line(const Row& row)
        : verdict(textOf(row.verdict()))
        , remark(row.remark) {
        if (row.measured) {
            value = number(row.measured->value) + " " + row.unit;
            noise = row.measured->noise > 0 ? number(row.measured->noise) : "";
        }
        if (row.target)
            target = number(*row.target);
        if (row.rawSeconds && row.librarySeconds)
            remark = "raw " + duration(*row.rawSeconds) + ", library " + duration(*row.librarySeconds) +
                     (remark.empty() ? "" : "; ") + remark;
    }

    std::string value, noise, target, verdict, remark;
};

void print(const Row& row) {
    const Line line(row);
    fmt::print("{:<56} {:>16} {:>8} {:>9}  {:<17} {}\n", row.work, line.value, line.noise, line.target,
               line.verdict, line.remark);
    std::fflush(stdout);
}

} // namespace

Verdict Row::verdict() const {
    if (!measured)
        return Verdict::notMeasured;
    if (!target)
        return Verdict::information;
    if (measured->value <= *target)
        return Verdict::met;
    return measured->value - measured->noise <= *target ? Verdict::withinNoise : Verdict::missed;
}

void Report::add(Row row) {
    print(row);
    rows_.push_back(std::move(row));
}

void Report::addRatio(const std::string& work, const Comparison& comparison, std::optional<double> target) {
    add({work, "x raw", comparison.ratio, target, comparison.raw, comparison.library.value, ""});
}

void Report::addGrowth(const std::string& work, const Comparison& smallToLarge) {
    add({work,
         "x",
         smallToLarge.ratio,
         1.25,
         {},
         {},
         duration(smallToLarge.library.value) + " to " + duration(smallToLarge.raw)});
}

void Report::addCount(const std::string& work, const std::string& unit, double counted, double target) {
    add({work, unit, Measured{counted, 0}, target, {}, {}, ""});
}

void Report::addFigure(const std::string& work, const std::string& unit, double value,
                       const std::string& remark) {
    add({work, unit, Measured{value, 0}, {}, {}, {}, remark});
}

void Report::addNotMeasured(const std::string& work, const std::string& reason) {
    add({work, "", {}, {}, {}, {}, reason});
}

bool Report::missed() const {
    return std::any_of(rows_.begin(), rows_.end(),
                       [](const Row& row) { return row.verdict() == Verdict::missed; });
}

nlohmann::json Report::toJson() const {
    auto list = nlohmann::json::array();
    for (const auto& row : rows_) {
        nlohmann::json entry{{"work", row.work}, {"verdict", textOf(row.verdict())}};
        if (row.measured) {
            entry["measured"] = row.measured->value;
            entry["noise"] = row.measured->noise;
            entry["unit"] = row.unit;
        }
        if (row.target)
            entry["target"] = *row.target;
        if (row.rawSeconds)
            entry["raw_seconds"] = *row.rawSeconds;
        if (row.librarySeconds)
            entry["library_seconds"] = *row.librarySeconds;
        if (!row.remark.empty())
            entry["remark"] = row.remark;
        list.push_back(entry);
    }
    return list;
}

std::string Report::toMarkdown() const {
    std::string table = "| Work | Measured | Noise | At most | | |\n|---|---|---|---|---|---|\n";
    for (const auto& row : rows_) {
        const Line line(row);
        table += fmt::format("| {} | {} | {} | {} | {} | {} |\n", row.work, line.value, line.noise,
                             line.target, line.verdict, line.remark);
    }
    return table;
}

} // namespace bench
