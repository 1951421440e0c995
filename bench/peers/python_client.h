#pragma once

#include <memory>
#include <string>

#include <bench/peers/peer.h>
#include <bench/python_worker.h>

namespace bench::peers {

/// The client of a peer in Python, whose program in bench/python makes the calls and looks at the results.
class PythonClient final : public Client {
public:
    PythonClient(const std::string& program, int port)
        : worker_(TAVO_PYTHON_PROGRAMS "/" + program, port, TAVO_PYTHON_GENERATED) {}

    unsigned turn(bool) override {
        worker_.work("turn");
        return 1;
    }
    void turns(std::size_t count) override { worker_.work("turn", count); }
    unsigned calls(std::size_t count) override {
        worker_.work("calls");
        return static_cast<unsigned>(count);
    }
    unsigned list(std::size_t count) override {
        worker_.work("list");
        return static_cast<unsigned>(count);
    }
    std::size_t download(std::size_t length) override {
        worker_.work("download");
        return length;
    }
    void upload(const Bytes&) override { worker_.work("upload"); }
    pid_t process() const override { return worker_.process(); }

private:
    PythonWorker worker_;
};

/// The main function of a peer that has a client in Python too: --python measures that one.
inline int compareEither(int argc, char** argv, const Peer& peer, const std::string& program) {
    if (argc != 2 || std::string(argv[1]) != "--python")
        return compare(peer);
    auto inPython = peer;
    const auto name = std::string(peer.name) + ", Python";
    inPython.name = name.c_str();
    inPython.connect = [&](int port) { return std::make_unique<PythonClient>(program, port); };
    return compare(inPython);
}

} // namespace bench::peers
