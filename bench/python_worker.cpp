#include <bench/python_worker.h>

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string_view>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <bench/sockets.h>

namespace bench {

namespace {

constexpr std::string_view done = "done\n";

} // namespace

PythonWorker::PythonWorker(const std::string& program, int port, const std::string& path) {
    const auto folder = std::filesystem::path(program).parent_path().string();
    const auto modules = "PYTHONPATH=" TAVO_PYTHON_PACKAGE ":" + folder + ":" + path;
    const auto portText = std::to_string(port);
    int toWorker[2], fromWorker[2];
    checked(::pipe2(toWorker, O_CLOEXEC), "pipe2");
    Descriptor workerInput(toWorker[0]);
    input_ = toWorker[1];
    checked(::pipe2(fromWorker, O_CLOEXEC), "pipe2");
    Descriptor workerOutput(fromWorker[1]);
    output_ = fromWorker[0];
    process_ = static_cast<pid_t>(checked(::fork(), "fork"));
    if (process_ == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(workerInput.number(), STDIN_FILENO);
        ::dup2(workerOutput.number(), STDOUT_FILENO);
        const char* const environment[] = {modules.c_str(), "PYTHONDONTWRITEBYTECODE=1", nullptr};
        ::execle(TAVO_PYTHON, TAVO_PYTHON, program.c_str(), portText.c_str(), nullptr, environment);
        ::_exit(1);
    }
    workerInput = Descriptor(-1);
    workerOutput = Descriptor(-1);
    awaitDone();
}

PythonWorker::~PythonWorker() {
    ::close(input_);
    ::close(output_);
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

void PythonWorker::work(const std::string& name, std::size_t pieces) {
    const auto line = name + " " + std::to_string(pieces) + "\n";
    if (::write(input_, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
        throw std::runtime_error("the Python program takes no more work");
    awaitDone();
}

void PythonWorker::awaitDone() {
    std::string told;
    while (told.size() < done.size()) {
        char more[done.size()];
        const auto count = ::read(output_, more, done.size() - told.size());
        if (count <= 0)
            throw std::runtime_error("the Python program failed");
        told.append(more, static_cast<std::size_t>(count));
    }
    if (told != done)
        throw std::runtime_error("the Python program answers: " + told);
}

} // namespace bench
