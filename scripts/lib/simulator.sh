# Sourced by scripts that talk to a simulated appliance in another process.

simulator_pid=
simulator_output=

# await_port WHO PID LOG SCRIPT: waits until the log shows where the process listens; sets port to the first line that
# the sed script prints. Shows the log if the process ends first or prints nothing for ten seconds.
await_port() {
    local waited=0
    # The log may not exist yet: the new process opens it.
    until port=$(sed -n "$4" "$3" 2>/dev/null | head -n 1) && [ -n "$port" ]; do
        if ! kill -0 "$2" 2>/dev/null || [ "$waited" -ge 200 ]; then
            echo "$1 does not start:" >&2
            cat "$3" >&2 || true
            return 1
        fi
        sleep 0.05
        waited=$((waited + 1))
    done
}

# start_simulator PROGRAM [ARGUMENT ...]: runs it on a free port and waits until it listens; sets simulator_port.
start_simulator() {
    simulator_output=$(mktemp)
    trap stop_simulator EXIT
    "$@" --port 0 >"$simulator_output" 2>&1 </dev/null &
    simulator_pid=$!
    await_port "The simulator" "$simulator_pid" "$simulator_output" 's/^listening on .*:\([0-9]\{1,5\}\)$/\1/p' || return 1
    simulator_port=$port
}

stop_simulator() {
    if [ -n "$simulator_pid" ]; then
        kill "$simulator_pid" 2>/dev/null || true
        wait "$simulator_pid" 2>/dev/null || true
        simulator_pid=
    fi
    if [ -n "$simulator_output" ]; then
        rm -f "$simulator_output"
        simulator_output=
    fi
}
