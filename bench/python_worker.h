#pragma once

#include <cstddef>
#include <string>

#include <sys/types.h>

namespace bench {

/// A Python program that does pieces of work when told, on the processor of this process. It ends with this
/// object, and with the process that made it.
class PythonWorker {
public:
    /// Returns when the program is ready. It is given the port, and finds modules in `path`, besides
    /// worker.py and the package tavo.
    PythonWorker(const std::string& program, int port, const std::string& path = "");
    PythonWorker(const PythonWorker&) = delete;
    PythonWorker& operator=(const PythonWorker&) = delete;
    ~PythonWorker();

    /// Returns when the work has been done so many times.
    /// @throws std::runtime_error if the program failed.
    void work(const std::string& name, std::size_t pieces = 1);
    pid_t process() const { return process_; }

private:
    void awaitDone();

    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
};

} // namespace bench
