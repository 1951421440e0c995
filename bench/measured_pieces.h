#pragma once

#include <functional>
#include <string>

#include <benchmark/benchmark.h>

#include <bench/rounds.h>

namespace bench {

/// Seconds per iteration of a benchmark that times its own iterations, over this many repetitions.
Measured measurePiece(const std::string& name, std::size_t repetitions,
                      const std::function<void(benchmark::State&)>& piece);

} // namespace bench
