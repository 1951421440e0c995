# command_lines.sh TOOL SIMULATOR PAGE: runs the command lines of a page as printed, in order, against one simulated
# appliance. Command lines are blocks marked sh, which must end with status 0, and blocks whose first line begins with
# "$ ", which must also print what the page shows; a line of ... stands for any lines. Comments right before a block:
#
#   <!-- not run: REASON -->            the block cannot run here
#   <!-- output varies: REASON -->      only the statuses are checked
#   <!-- goes on -->                    the block is stopped as soon as it has printed what the page shows
#   <!-- status N -->                   the last command line of the block ends with this status
#   <!-- the configuration file -->     (before a block marked toml) this is ~/.config/tavo/config.toml
#   <!-- with the configuration file --> it holds for this block; for the others every name is the simulated appliance
set -euo pipefail
. "$(dirname "$0")/../../scripts/lib/simulator.sh"
tool=$1 simulator=$2 page=$3
name=${page##*/}
seconds_for_a_block=60

# Sockets have short paths, so not below the build.
place=$(mktemp -d)
group=
trap 'rm -rf "$place"' EXIT
finish() {
    end_group
    stop_simulator
    rm -rf "$place"
}

# Ends all processes that a block started.
end_group() {
    local waited=0
    if [ -n "$group" ] && kill -TERM -- "-$group" 2>/dev/null; then
        while kill -0 -- "-$group" 2>/dev/null && [ "$waited" -lt 50 ]; do
            sleep 0.1
            waited=$((waited + 1))
        done
        kill -KILL -- "-$group" 2>/dev/null || true
    fi
    group=
}

mistakes=0
blocks=0
mistake() {
    printf '%s:%s\n' "$name" "$*" >&2
    mistakes=$((mistakes + 1))
}

# begin_world: alice's home, devices with any name that the pages use, and a gateway; at the first block that runs.
begin_world() {
    mkdir -p "$place"/{bin,here,home/.config/tavo,runtime}
    chmod 700 "$place/runtime"
    ln -s "$tool" "$place/bin/tavo"
    ln -s "$simulator" "$place/bin/tavo-sim"
    printf '%s:tavo\n' alice bob engineer >"$place/accounts"
    start_simulator "$simulator" --quiet --accounts "$place/accounts"
    trap finish EXIT # start_simulator has its own
    cat >"$place/devices.toml" <<TOML
[defaults]
host = "lab-tavo"
user = "alice"
TOML
    for device in lab-tavo lab1 lab2 appliance; do
        printf '[%s]\nhost = "127.0.0.1"\nport = %s\n' "$device" "$simulator_port" >>"$place/devices.toml"
    done
    # Only one of them: the programs of one user would give back each other's lock.
    sed -i 's/^\[lab1\]$/&\ngroup = "rack-a"/' "$place/devices.toml"
    # ssh GATEWAY -W HOST:PORT
    cat >"$place/bin/ssh" <<SSH
#!/bin/sh
[ "\$2" = -W ] && exec socat STDIO TCP:127.0.0.1:$simulator_port
SSH
    chmod +x "$place/bin/ssh"
    # A board without power is not worth a page.
    with_devices tavo relay set power on
}

# with_devices COMMAND ...: the environment of alice.
with_devices() {
    env -i "PATH=$place/bin:/usr/local/bin:/usr/bin:/bin" "HOME=$place/home" "XDG_RUNTIME_DIR=$place/runtime" \
        "TAVO_CONFIG=$place/devices.toml" TAVO_PASSWORD=tavo LC_ALL=C TERM=dumb "$@"
}

# --- the blocks
# differs EXPECTED ACTUAL: says how the lines differ, with what changes from run to run made equal. A line of ... in
# EXPECTED stands for any lines.
differs() {
    local file
    for file in "$@"; do
        sed -e "s|$place/home|/home/alice|g" -e 's/127\.0\.0\.1:[0-9]\+/127.0.0.1:PORT/g' -e 's/ *$//' "$file" >"$file.same"
    done
    if awk 'FNR == NR { expected[++n] = $0; next }
        { actual[++m] = $0 }
        # Whether the lines from place on of EXPECTED are those from other on of what was printed.
        function fits(place, other, i) {
            if (place > n)
                return other > m
            if (expected[place] == "...") {
                for (i = other; i <= m + 1; ++i)
                    if (fits(place + 1, i))
                        return 1
                return 0
            }
            return other <= m && expected[place] == actual[other] && fits(place + 1, other + 1)
        }
        END { exit !fits(1, 1) }' "$1.same" "$2.same"; then
        return 1
    fi
    diff -u --label shown "$1.same" --label printed "$2.same" || true
}

# prepare: makes of the block's text the script $place/script, which leaves each command's output and status in
# $place/N.out and $place/N.status; what the page shows goes to $place/N.shown. Sets commands.
prepare() {
    local line number=0 more=
    rm -f "$place"/*.{out,status,shown,same} "$place/script"
    if [ "$language" = sh ]; then
        commands=1
        : >"$place/1.shown"
        printf '(set -e\n%s) >%s/1.out 2>&1\necho $? >%s/1.status\n' "$text" "$place" "$place" >"$place/script"
        return
    fi
    while IFS= read -r line; do
        if [ -n "$more" ]; then
            :
        elif [[ $line == '$ '* ]]; then
            line=${line#'$ '}
            number=$((number + 1))
            : >"$place/$number.shown"
            printf '{\n' >>"$place/script"
        else
            printf '%s\n' "$line" >>"$place/$number.shown"
            continue
        fi
        printf '%s\n' "$line" >>"$place/script"
        more=
        if [[ $line == *\\ ]]; then
            more=1
        else
            printf '} >%s/%s.out 2>&1\necho $? >%s/%s.status\n' "$place" "$number" "$place" "$number" >>"$place/script"
        fi
    done < <(printf '%s' "$text")
    commands=$number
}

start() {
    local settings=()
    if [ -n "$own_file" ]; then
        settings=(env -u TAVO_CONFIG -u TAVO_PASSWORD)
    fi
    cd "$place/here"
    with_devices setsid "${settings[@]}" timeout --foreground -k 2 "$seconds_for_a_block" bash "$place/script" </dev/null >/dev/null 2>&1 &
    group=$!
    cd "$OLDPWD"
}

# shown_so_far: waits until the block that goes on has printed what the page shows.
shown_so_far() {
    local waited=0
    while [ "$waited" -lt 100 ]; do
        if [ -e "$place/$commands.out" ] && ! differs "$place/$commands.shown" "$place/$commands.out" >/dev/null; then
            return
        fi
        sleep 0.1
        waited=$((waited + 1))
    done
    mistake "$begins: does not print what the page shows:"
    differs "$place/$commands.shown" "$place/$commands.out" >&2
}

run_block() {
    local number wanted status difference
    [ -n "$simulator_pid" ] || begin_world
    prepare
    start
    if [ -n "$goes_on" ]; then
        shown_so_far
        end_group
        return
    fi
    wait "$group" || true
    end_group
    for ((number = 1; number <= commands; ++number)); do
        wanted=0
        [ "$number" -lt "$commands" ] || wanted=$last_status
        if [ ! -e "$place/$number.status" ]; then
            mistake "$begins: command $number does not end in $seconds_for_a_block seconds"
            cat "$place/$number.out" >&2 || true
            return
        fi
        status=$(cat "$place/$number.status")
        if [ "$status" -ne "$wanted" ]; then
            mistake "$begins: command $number ends with status $status, not $wanted:"
            cat "$place/$number.out" >&2
        elif [ "$language" != sh ] && [ -z "$varies" ] &&
            difference=$(differs "$place/$number.shown" "$place/$number.out"); then
            mistake "$begins: command $number prints something else:"
            printf '%s\n' "$difference" >&2
        fi
    done
}

forget_marks() {
    not_run= varies= goes_on= last_status=0 is_file= own_file=
}

# mark LINE: takes a comment before a block.
mark() {
    local text=${1#'<!-- '}
    text=${text%' -->'}
    case $text in
        'not run: '?*) not_run=1 ;;
        'output varies: '?*) varies=1 ;;
        'goes on') goes_on=1 ;;
        'status '[0-9]*) last_status=${text#status } ;;
        'the configuration file') is_file=1 ;;
        'with the configuration file') own_file=1 ;;
        'not run'* | 'output varies'*)
            mistake "$number: this mark gives no reason: $1"
            not_run=1
            ;;
        *) unknown="$number: this mark is not known: $1" ;;
    esac
}

# Takes the block that has been read.
take_block() {
    if [ -n "$is_file" ]; then
        mkdir -p "$place/home/.config/tavo"
        printf '%s' "$text" >"$place/home/.config/tavo/config.toml"
    elif [ "$language" = sh ] || [[ $text == '$ '* ]]; then
        [ -z "$unknown" ] || mistake "$unknown"
        blocks=$((blocks + 1))
        [ -n "$not_run" ] || run_block
    fi
}

inside= unknown= number=0
forget_marks
while IFS= read -r line; do
    number=$((number + 1))
    if [[ $line =~ ^\ *'```' ]] && [ -z "$inside" ]; then
        inside=1 begins=$number text=
        language=${line#*'```'}
    elif [[ $line =~ ^\ *'```' ]]; then
        inside=
        take_block
        forget_marks
        unknown=
    elif [ -n "$inside" ]; then
        text+=$line$'\n'
    elif [[ $line == '<!-- '*' -->' ]]; then
        mark "$line"
    elif [ -n "$line" ]; then
        forget_marks
        unknown=
    fi
done <"$page"

echo "$blocks blocks with command lines, $mistakes mistakes"
[ "$mistakes" -eq 0 ]
