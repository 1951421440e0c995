#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <tavo/cli/output.h>
#include <tavo/trace/exchange.h>

namespace TAVO::cli {

/// Writes one line for each call of an exchange. Secrets are blanked, whether they are in the file or not.
void showExchange(Output& output, const trace::Exchange& exchange, const trace::Names& names,
                  std::chrono::nanoseconds start);

/// How long the calls took, by method. A call of a batch counts as an equal part of its exchange.
class CallTimes {
public:
    void add(const trace::Exchange& exchange, const trace::Names& names);
    void show(Output& output) const;

private:
    std::map<std::string, std::vector<double>> milliseconds_;
};

} // namespace TAVO::cli
