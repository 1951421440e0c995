# run_program.sh SIMULATOR OPENINGS PROGRAM ...: the program ends well, having opened the simulated appliance that
# often and unlocked it each time.
set -euo pipefail
. "$(dirname "$0")/../../scripts/lib/simulator.sh"
simulator=$1
openings=$2
shift 2
start_simulator "$simulator" --log
TAVO_SIM_PORT=$simulator_port timeout 60 "$@"

locks=$(grep -c ' device\.lock(.* = 0$' "$simulator_output" || true)
unlocks=$(grep -c ' device\.unlock(.* = 0$' "$simulator_output" || true)
if [ "$locks" != "$openings" ] || [ "$unlocks" != "$openings" ]; then
    echo "expected $openings openings; the appliance was locked $locks and unlocked $unlocks times:" >&2
    cat "$simulator_output" >&2
    exit 1
fi
