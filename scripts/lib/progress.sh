# Sourced by scripts/test: shows the progress of long commands.

# Seconds between two checks, and the longest silence.
if [ -t 1 ]; then progress_look=1; else progress_look=10; fi
progress_silence=60

# how_far LOG ...: prints "done all" from the last count of ninja, ctest or cppcheck, or from the finished GoogleTest
# tests in all logs; nothing if there is no count.
how_far() {
    cat "$@" 2>/dev/null | tr -d '\r' | awk '
        match($0, /^\[[0-9]+\/[0-9]+\]/) { split(substr($0, 2, RLENGTH - 2), part, "/"); done = part[1]; all = part[2] }
        $1 ~ /^[0-9]+\/[0-9]+$/ && ($2 == "Test" || $2 == "files") { split($1, part, "/"); done = part[1]; all = part[2] }
        /^\[==========\] Running [0-9]+ test/ { all += $3 }
        /^\[ +(OK|FAILED|SKIPPED) +\] .* \([0-9]+ ms\)$/ { ++done }
        END { if (all) print done + 0, all }'
}

# tell_progress NAME LOG: shows progress next to a running command, until killed or until the script ends: in place on a
# terminal, else a line for every tenth, or every minute if a tenth takes longer or there is no count.
tell_progress() {
    local name=$1 log=$2 begun=$SECONDS told=$SECONDS tenths=0 now far finished all
    while kill -0 $$ 2>/dev/null; do
        sleep "$progress_look" >/dev/null 2>&1
        finished= all=
        read -r finished all < <(how_far "$log" "$log".*) || true
        now=$((SECONDS - begun))
        far="${all:+$finished of $all, }$now s"
        if [ -t 1 ]; then
            printf '\r\033[K%-34s %s' "$name" "$far"
        elif [ $((SECONDS - told)) -ge "$progress_silence" ] || { [ -n "$all" ] && [ $((finished * 10 / all)) -gt "$tenths" ]; }; then
            printf '%s: %s\n' "$name" "$far"
            told=$SECONDS
            [ -z "$all" ] || tenths=$((finished * 10 / all))
        fi
    done
}

# with_progress NAME LOG COMMAND ...: runs the command with its output in the log, in the foreground, so that Ctrl-C
# ends it.
with_progress() {
    local name=$1 log=$2 teller status=0
    shift 2
    rm -f "$log" "$log".*
    tell_progress "$name" "$log" &
    teller=$!
    "$@" >"$log" 2>&1 </dev/null || status=$?
    kill "$teller" 2>/dev/null || true
    wait "$teller" 2>/dev/null || true
    if [ -t 1 ]; then
        printf '\r\033[K'
    fi
    return "$status"
}
