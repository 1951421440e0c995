#include <tavo/cli/prometheus.h>

#include <iterator>

#include <fmt/format.h>

#include <tavo/cli/values/visible_text.h>

namespace TAVO::cli {

namespace {

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '\\' || c == '"')
            result += '\\';
        result += c;
    }
    return result;
}

} // namespace

void PrometheusText::begin(std::string name, std::string help) {
    metrics_.push_back({std::move(name), std::move(help), {}});
}

void PrometheusText::add(double value, const Labels& labels) {
    auto all = common_;
    all.insert(all.end(), labels.begin(), labels.end());
    for (auto& label : all)
        label.second = visible(label.second);
    if (seen_.insert({metrics_.size(), all}).second)
        metrics_.back().values.push_back({std::move(all), value});
}

std::string PrometheusText::text() const {
    fmt::memory_buffer out;
    const auto to = std::back_inserter(out);
    for (const auto& metric : metrics_) {
        if (metric.values.empty())
            continue;
        fmt::format_to(to, "# HELP {} {}\n# TYPE {} gauge\n", metric.name, metric.help, metric.name);
        for (const auto& [labels, value] : metric.values) {
            fmt::format_to(to, "{}", metric.name);
            const char* separator = "{";
            for (const auto& [name, content] : labels) {
                fmt::format_to(to, "{}{}=\"{}\"", separator, name, escaped(content));
                separator = ",";
            }
            fmt::format_to(to, "{} {}\n", labels.empty() ? "" : "}", value);
        }
    }
    return fmt::to_string(out);
}

nlohmann::json PrometheusText::document() const {
    auto document = nlohmann::json::array();
    for (const auto& metric : metrics_)
        for (const auto& [labels, value] : metric.values) {
            auto& entry = document.emplace_back();
            entry["name"] = metric.name;
            entry["labels"] = nlohmann::json::object();
            for (const auto& [name, content] : labels)
                entry["labels"][name] = content;
            entry["value"] = value;
        }
    return document;
}

} // namespace TAVO::cli
