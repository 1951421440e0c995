#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace TAVO::cli {

/// Measured values in the text format of Prometheus.
class PrometheusText {
public:
    using Labels = std::vector<std::pair<std::string, std::string>>;

    /// @param labels those of every value.
    explicit PrometheusText(Labels labels)
        : common_(std::move(labels)) {}

    /// Begins a metric, of type gauge. Nothing is printed of one without values.
    void begin(std::string name, std::string help);
    /// Adds a value of the metric begun last. The texts of labels are made visible first. A second value with
    /// the same labels is left out: whoever reads the text would refuse all of it.
    void add(double value, const Labels& labels = {});

    std::string text() const;
    /// A list of {"name", "labels", "value"}.
    nlohmann::json document() const;

private:
    struct Value {
        Labels labels;
        double value;
    };
    struct Metric {
        std::string name;
        std::string help;
        std::vector<Value> values;
    };

    Labels common_;
    std::vector<Metric> metrics_;
    /// Number of the metric, and labels.
    std::set<std::pair<std::size_t, Labels>> seen_;
};

} // namespace TAVO::cli
