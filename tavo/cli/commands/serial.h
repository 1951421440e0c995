#pragma once

#include <string>

#include <tavo/cli/command.h>
#include <tavo/cli/output.h>
#include <tavo/cli/serial_serve/line_settings.h>
#include <tavo/cli/session.h>

/// Shared by `serial` and `serial serve`.
namespace TAVO::cli {

struct SerialLineOptions {
    std::string object;
    int baud = 115200;
    int dataBits = 8;
    std::string parity = "none";
    int stopBits = 1;
    bool rtsCts = false;
    bool dtrDsr = false;
    bool xonXoff = false;
    bool loopback = false;

    void describe(OptionList& list);
    LineSettings settings() const;
};

struct SerialServeOptions : SerialLineOptions {
    std::string rfc2217;
    std::string tcp;
    bool pty = false;
    std::string link;
    bool once = false;

    void describe(OptionList& list);
};

void serveSerial(Session& session, Output& output, const SerialServeOptions& options);

} // namespace TAVO::cli
