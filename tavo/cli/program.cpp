#include <tavo/cli/program.h>

namespace TAVO::cli {

void Program::describe(OptionList& list) {
    const auto heading = "Connection";
    list.add("--json", json, "Data and failures as JSON");
    list.add("--host", connection.host, "The device's name or address", {.heading = heading});
    list.add("--port", connection.port, "Its port, 6123 unless given, 6124 with --secure",
             {.limits = between(1, 65535), .heading = heading});
    list.add("--user", connection.user, "In whose name the lock is taken", {.heading = heading});
    list.add("--password-file", connection.passwordFile, "File whose first line is the password",
             {.kind = ValueKind::file, .heading = heading});
    list.add("--via", connection.via,
             "Reach the device through a command of the shell, %h being the host and %p the\n"
             "port, such as 'ssh gateway -W %h:%p'",
             {.valueName = "COMMAND", .heading = heading, .needs = {"--host"}});
    list.add("--secure", connection.secure, "Insist on a known server key", {.heading = heading});
    list.add("--timeout", connection.timeout,
             "How long the device may take to answer each exchange, such as 500ms, 10s or 2m; as\n"
             "long as it takes unless given",
             {.kind = ValueKind::duration,
              .limits = between(0.001, 1e6),
              .valueName = "DURATION",
              .heading = heading});
    list.add("--sim", connection.simulated, "Use a simulated device inside the tool instead",
             {.heading = heading, .excludes = {"--host", "--port", "--via"}});
    list.add("--topology", connection.topology, "Which simulated device",
             {.showsDefault = true, .heading = heading, .needs = {"--sim"}});
}

} // namespace TAVO::cli
