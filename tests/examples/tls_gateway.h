#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <stdlib.h>

#include <tests/support/process.h>
#include <tests/support/raw_server.h>

/// A TLS gateway as it is found in front of an appliance: an unchanged stunnel.
namespace support {

/// Whom the gateway's certificate is for, beside 127.0.0.1.
inline constexpr const char* certifiedName = "gateway.example";

inline const std::string stunnel = "/usr/bin/stunnel4";
inline const std::string openssl = "/usr/bin/openssl";
class TemporaryFolder {
public:
    TemporaryFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "tavo-tls-XXXXXX").string();
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("cannot make " + pattern);
        path_ = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }

    std::string file(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

/// Those of two CAs, "ca" and "other-ca", and of a gateway whose certificate the first has signed: for each a
/// file of its name with ".pem" and one of its key with ".key".
class Certificates {
public:
    Certificates() {
        make("ca", {"-subj", "/CN=The CA"});
        make("other-ca", {"-subj", "/CN=Another CA"});
        make("gateway", {"-subj", "/CN=gateway", "-CA", file("ca.pem"), "-CAkey", file("ca.key"), "-addext",
                         std::string("subjectAltName=DNS:") + certifiedName + ",IP:127.0.0.1", "-addext",
                         "basicConstraints=CA:FALSE"});
    }
    std::string file(const std::string& name) const { return folder_.file(name); }

private:
    void make(const std::string& name, const std::vector<std::string>& more) const {
        std::vector<std::string> arguments{"req",
                                           "-x509",
                                           "-newkey",
                                           "ec",
                                           "-pkeyopt",
                                           "ec_paramgen_curve:prime256v1",
                                           "-nodes",
                                           "-days",
                                           "2",
                                           "-keyout",
                                           file(name + ".key"),
                                           "-out",
                                           file(name + ".pem")};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const auto outcome = runProcess({openssl, arguments});
        if (outcome.exitCode != 0)
            throw std::runtime_error("no certificate: " + outcome.errors);
    }

    TemporaryFolder folder_;
};

/// An stunnel in front of a port of 127.0.0.1.
class Gateway {
public:
    Gateway(const Certificates& certificates, std::uint16_t target)
        : process_({stunnel, {configuration(certificates, target)}}) {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        const std::string bound = " bound to 127.0.0.1:";
        while (port_.empty()) {
            std::ifstream log(folder_.file("log"));
            std::ostringstream text;
            text << log.rdbuf();
            const auto at = text.str().find(bound);
            const auto end = text.str().find('\n', at);
            if (at != std::string::npos && end != std::string::npos)
                port_ = text.str().substr(at + bound.size(), end - at - bound.size());
            else if (std::chrono::steady_clock::now() > deadline)
                throw std::runtime_error("stunnel does not start: " + text.str());
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

    const std::string& port() const { return port_; }

private:
    std::string configuration(const Certificates& certificates, std::uint16_t target) const {
        const auto name = folder_.file("stunnel.conf");
        std::ofstream(name) << "foreground = yes\npid =\ndebug = info\noutput = " << folder_.file("log")
                            << "\n[appliance]\naccept = 127.0.0.1:0\nconnect = 127.0.0.1:" << target
                            << "\ncert = " << certificates.file("gateway.pem")
                            << "\nkey = " << certificates.file("gateway.key") << '\n';
        return name;
    }

    TemporaryFolder folder_;
    Process process_;
    std::string port_;
};

} // namespace support
