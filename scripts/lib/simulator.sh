# Sourced by scripts that talk to a simulated appliance in a process of its own.

simulator_pid=
simulator_output=

# start_simulator PROGRAM [ARGUMENT ...]: runs it on a free port and waits until it listens; sets simulator_port.
start_simulator() {
    simulator_output=$(mktemp)
    trap stop_simulator EXIT
    "$@" --port 0 >"$simulator_output" 2>&1 </dev/null &
    simulator_pid=$!
    simulator_port=
    local waited=0
    while [ -z "$simulator_port" ]; do
        simulator_port=$(sed -n 's/^.*[^0-9.]\([0-9]\{1,5\}\)[^0-9]*$/\1/p' "$simulator_output" | head -n 1)
        if [ -z "$simulator_port" ]; then
            if ! kill -0 "$simulator_pid" 2>/dev/null || [ "$waited" -ge 200 ]; then
                echo "The simulator does not start:" >&2
                cat "$simulator_output" >&2
                return 1
            fi
            sleep 0.05
            waited=$((waited + 1))
        fi
    done
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
