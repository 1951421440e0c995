# run_example.sh SIMULATOR EXAMPLE: the example finishes its work against a simulated appliance and reports it.
set -euo pipefail
. "$(dirname "$0")/../../scripts/lib/simulator.sh"
start_simulator "$1"
output=$("$2" 127.0.0.1 "$simulator_port")
printf '%s\n' "$output"
[ -n "$output" ]
