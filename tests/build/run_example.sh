# run_example.sh SIMULATOR EXAMPLE EXPECTED: the example finishes its work against a simulated appliance and
# prints the lines of the file EXPECTED, in which * stands for any text and a line of ... for any lines. An example of
# TLS talks to it through stunnel.
set -euo pipefail
. "$(dirname "$0")/../../scripts/lib/simulator.sh"
start_simulator "$1"
case $2 in
    *_tls)
        . "$(dirname "$0")/stunnel.sh"
        start_stunnel "$simulator_port"
        output=$("$2" localhost "$stunnel_port" "$stunnel_folder/ca.pem")
        ;;
    *) output=$("$2" 127.0.0.1 "$simulator_port") ;;
esac
printf '%s\n' "$output"

pattern=$(sed 's/[][\\.^$+?(){}|]/\\&/g; s/\*/[^\n]*/g' "$3" |
    sed -z 's/\(^\|\n\)\\\.\\\.\\\.\n/\1(.*\n)?/g' && printf .)
if ! [[ $output$'\n' =~ ^${pattern%.}$ ]]; then
    printf '\nExpected was, by %s:\n%s\n' "$3" "$(cat "$3")" >&2
    exit 1
fi
