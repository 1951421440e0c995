#include <csignal>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <fmt/format.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/version_number.h>
#include <tavo/simulator/main/accounts_file.h>
#include <tavo/simulator/main/file_mode.h>
#include <tavo/simulator/main/printable_text.h>
#include <tavo/simulator/main/replay.h>
#include <tavo/simulator/main/tap_log_file.h>
#include <tavo/simulator/simulator.h>
#include <tavo/simulator/topology.h>

namespace {

namespace simulator = TAVO::simulator;

constexpr int usageError = 2;

struct Arguments {
    simulator::Options options;
    std::vector<std::string> faults;
    std::string accounts;
    std::optional<std::string> tapLog;
    std::optional<std::string> replay;
    bool listTopologies = false;
    bool log = false;
    bool quiet = false;
};

void describe(CLI::App& app, Arguments& arguments) {
    auto& options = arguments.options;
    options.port = TAVO::DeviceFactory::DefaultPort;
    app.add_option("--host", options.host, "Address to listen on")->capture_default_str();
    app.add_option("--port", options.port, "Port to listen on; 0 lets the system choose one")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--topology", options.topology,
                   "Objects of the appliance: the name of a topology, or a file")
        ->type_name("NAME|FILE.json")
        ->capture_default_str();
    app.add_flag("--list-topologies", arguments.listTopologies, "List the topologies and exit");
    app.add_option("--fault", arguments.faults, "Spoil a request (repeatable, see below)")
        ->type_name("REQUEST:FAULT")
        ->expected(1)
        ->take_all();
    app.add_option("--accounts", arguments.accounts,
                   "Users who may take the lock: a file with one USER:PASSWORD per line\n"
                   "(instead of engineer:tavo and guest:tavo)")
        ->type_name("FILE");
    app.add_option("--connections", options.mostConnections,
                   "Most open connections; one more closes the longest idle one")
        ->check(CLI::Range(1, 1'000'000))
        ->capture_default_str();
    app.add_option("--key", options.serverKey, "Known server key to answer with; -1 for an unknown one")
        ->type_name("INDEX")
        ->check(CLI::Range(-1, 3))
        ->capture_default_str();
    auto* log = app.add_flag("--log", arguments.log, "Log every call to standard error");
    app.add_option("--tap-log", arguments.tapLog,
                   "Write what arrives at the pins of every jtag to a file, in lines, or as a value change\n"
                   "dump if its name ends in .vcd")
        ->type_name("FILE");
    app.add_option(
           "--replay", arguments.replay,
           "Answer as the device in a trace did, and end at the first request that differs: a pcapng\n"
           "file, such as 'tavo --trace' writes")
        ->type_name("FILE")
        ->excludes("--topology", "--fault", "--accounts", "--key", "--log", "--tap-log");
    app.add_flag("--quiet", arguments.quiet, "Print only the line with the port")->excludes(log);
    app.set_version_flag("--version", "tavo-sim " + TAVO::ClientLibraryVersion);
    app.footer("\n" + simulator::FaultScript::grammar() +
               "\nPrints its address on standard output and runs until SIGINT or SIGTERM.");
}

void addAccounts(Arguments& arguments) {
    if (arguments.accounts.empty())
        return;
    arguments.options.accounts = readAccounts(arguments.accounts);
    if (const auto mode = modeOpenToOthers(arguments.accounts); mode && !arguments.quiet)
        fmt::print(stderr,
                   "tavo-sim: the accounts file '{}' is accessible to others: its mode is {:04o}, not 0600\n",
                   arguments.accounts, *mode);
}

simulator::FaultScript faultScript(const Arguments& arguments) {
    simulator::FaultScript script;
    for (const auto& fault : arguments.faults)
        script.add(fault);
    return script;
}

void hidePassword(simulator::CallRecord& record) {
    // The challenge is public, so a response reveals the password too.
    const auto* secret = record.method == "CHAPRespond" ? "response" : "password";
    if (auto* parameters = std::get_if<TAVO::Value::Record>(&record.parameters.data))
        for (auto& parameter : *parameters)
            if (parameter.name == secret)
                parameter.value = TAVO::Value(std::string("***"));
}

void serve(simulator::Simulator& appliance, const Arguments& arguments) {
    asio::io_context context;
    asio::signal_set end(context, SIGINT, SIGTERM);
    end.async_wait([](const asio::error_code&, int) {});
    if (arguments.log)
        appliance.setObserver([](simulator::CallRecord record) {
            hidePassword(record);
            fmt::print(stderr, "{}\n", printableText(record.toString()));
        });
    appliance.start();
    fmt::print("listening on {}:{}\n", arguments.options.host, appliance.port());
    std::fflush(stdout);
    context.run();
    appliance.stop();
    if (!arguments.quiet)
        fmt::print(stderr, "stopped after {} requests on {} connections\n", appliance.requestCount(),
                   appliance.connectionCount());
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("A simulated appliance.", "tavo-sim");
    Arguments arguments;
    arguments.options.mostLogBytes = 0; // nobody calls calls() here
    describe(app, arguments);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : usageError;
    }
    if (arguments.listTopologies) {
        for (const auto& topology : simulator::topologies())
            fmt::print("{:<28} {}\n", topology.name, topology.description);
        return 0;
    }
    try {
        if (arguments.replay)
            return replay(*arguments.replay, arguments.options.host,
                          static_cast<std::uint16_t>(arguments.options.port), arguments.quiet);
        addAccounts(arguments);
        std::optional<TapLogFile> tapLog;
        simulator::Simulator appliance(arguments.options);
        appliance.setFaults(faultScript(arguments));
        if (arguments.tapLog)
            appliance.inspect(
                [&](simulator::Appliance& followed) { tapLog.emplace(*arguments.tapLog, followed); });
        serve(appliance, arguments);
        return tapLog && !tapLog->close() ? 1 : 0;
    } catch (const std::invalid_argument& error) {
        std::cerr << "tavo-sim: " << error.what() << '\n';
        return usageError;
    } catch (const std::exception& error) {
        std::cerr << "tavo-sim: " << error.what() << '\n';
        return 1;
    }
}
