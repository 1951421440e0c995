#include <cstdint>
#include <stdexcept>
#include <string>

#include <windows.h>

#include <gtest/gtest.h>

#include <tests/simulator/raw_client.h>
#include <tests/support/hang_guard.h>

namespace {

using namespace support;

/// The program, and what it writes to its standard output. Ended by its destructor when it still runs.
class Program {
public:
    explicit Program(const std::string& arguments) {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE written = nullptr;
        if (!::CreatePipe(&output_, &written, &inherited, 0))
            throw std::runtime_error("cannot make a pipe");
        ::SetHandleInformation(output_, HANDLE_FLAG_INHERIT, 0);
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = written;
        startup.hStdError = written;
        std::string command = "\"" TAVO_SIM_PROGRAM "\" " + arguments;
        const auto started = ::CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                              nullptr, &startup, &process_);
        ::CloseHandle(written);
        if (!started)
            throw std::runtime_error("cannot start " + command);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() {
        ::TerminateProcess(process_.hProcess, 99);
        ::CloseHandle(process_.hThread);
        ::CloseHandle(process_.hProcess);
        ::CloseHandle(output_);
    }

    /// The next line without its end; empty at the end of the output.
    std::string line() {
        std::string text;
        char next = 0;
        DWORD count = 0;
        while (::ReadFile(output_, &next, 1, &count, nullptr) && count == 1 && next != '\n')
            if (next != '\r')
                text += next;
        return text;
    }

    DWORD exitCode() {
        ::WaitForSingleObject(process_.hProcess, INFINITE);
        DWORD code = 0;
        ::GetExitCodeProcess(process_.hProcess, &code);
        return code;
    }

private:
    HangGuard guard_;
    HANDLE output_ = nullptr;
    PROCESS_INFORMATION process_{};
};

TEST(TavoSimOnWindows, TellsItsPortAndServes) {
    Program program("--port 0");
    const std::string start = "listening on 127.0.0.1:";
    const auto line = program.line();
    ASSERT_EQ(line.substr(0, start.size()), start);
    RawClient client(static_cast<std::uint16_t>(std::stoi(line.substr(start.size()))));
    client.send(requestBytes(0, {callBytes(0, 3)}));
    EXPECT_GT(client.receive().size(), 100u);
}

TEST(TavoSimOnWindows, ListsItsTopologies) {
    Program program("--list-topologies");
    EXPECT_EQ(program.line().substr(0, 9), "standard ");
    EXPECT_EQ(program.exitCode(), 0u);
}

TEST(TavoSimOnWindows, RefusesWrongArgumentsWithStatus2) {
    Program program("--port x");
    EXPECT_EQ(program.exitCode(), 2u);
}

} // namespace
