#include <tavo/cli/program.h>

namespace TAVO::cli {

void Program::describe(OptionList& list) {
    const auto heading = "Connection";
    list.add("--json", json, "Print data and failures as JSON");
    list.add("--host", connection.host,
             "The device: a name of the configuration file, or HOST, HOST:PORT, [IPV6] or [IPV6]:PORT",
             {.nameKind = NameKind::device, .valueName = "DEVICE", .heading = heading});
    list.add("--port", connection.port, "Its port; default 6123, or 6124 with --secure",
             {.limits = between(1, 65535), .heading = heading});
    list.add("--user", connection.user, "User who takes the lock", {.heading = heading});
    list.add("--password-file", connection.passwordFile, "File with the password in its first line",
             {.kind = ValueKind::file, .heading = heading});
    list.add("--via", connection.via,
             "Reach the device through a shell command, such as 'ssh gateway -W %h:%p';\n"
             "%h is the host, %p the port",
             {.valueName = "COMMAND", .heading = heading});
    list.add("--wait-lock", connection.waitForLock,
             "Wait that long for a lock that another user holds; default: do not wait",
             {.kind = ValueKind::duration,
              .limits = between(0.0, 1e6),
              .valueName = "DURATION",
              .heading = heading});
    list.add("--direct", connection.direct, "Do not go through a share that runs on this machine",
             {.heading = heading});
    list.add("--secure", connection.secure, "Require a known server key", {.heading = heading});
    list.add("--no-secure", connection.notSecure, "Do not, whatever the configuration file says",
             {.heading = heading, .excludes = {"--secure"}});
    list.add("--strict", connection.strict, "Refuse a password file that others may read",
             {.heading = heading});
    list.add("--timeout", connection.timeout,
             "Time limit for each exchange with the device, such as 500ms, 10s or 2m; 0 for none;\n"
             "default: 10s, and more for what is meant to take longer. Resolving a name has no limit",
             {.kind = ValueKind::duration,
              .limits = between(0.0, 1e6),
              .valueName = "DURATION",
              .heading = heading});
    list.add("--trace", traceFile, "Write all that passes between tool and device to a pcapng file",
             {.kind = ValueKind::file, .heading = heading});
    list.add("--trace-secrets", traceSecrets,
             "Keep passwords and lock ids in it, which are blanked otherwise",
             {.heading = heading, .needs = {"--trace"}});
    list.add("--sim", connection.simulated, "Use a simulated device inside the tool",
             {.heading = heading, .excludes = {"--host", "--port", "--via"}});
    list.add("--topology", connection.topology, "Topology of the simulated device",
             {.showsDefault = true,
              .kind = ValueKind::file,
              .nameKind = NameKind::topology,
              .valueName = "NAME",
              .heading = heading,
              .needs = {"--sim"}});
}

} // namespace TAVO::cli
