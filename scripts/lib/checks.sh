# Sourced by scripts/test: functions for the kinds of tests.

. scripts/lib/progress.sh

passed=()
failed_checks=()
failed=()
cases=

# without_successes LOG: the log without the lines of ctest and cppcheck about successes.
without_successes() {
    grep -av -e '^ *Start *[0-9]*:' -e '[.] *Passed *[0-9.]* sec$' -e '^Checking ' -e '^[0-9/]* files checked ' "$1"
}

# step NAME COMMAND ...: runs the command with its output in a log and reports the outcome; shows the log on failure.
step() {
    local name=$1 start=$SECONDS
    shift
    if with_progress "$name" "$results/logs/$name.log" "$@"; then
        took=$((SECONDS - start))
        printf '%-34s ok (%d s)\n' "$name" "$took"
    else
        took=$((SECONDS - start))
        printf '%-34s FAILED (%d s)\n' "$name" "$took"
        without_successes "$results/logs/$name.log" | tail -n 100
        failed+=("$name")
        return 1
    fi
}

# check NAME COMMAND ...: a step that counts as one case in the results.
check() {
    local name=$1
    if step "$@"; then
        passed+=("$name")
        cases+="  <testcase name=\"$name\" classname=\"checks\" time=\"$took\"/>"$'\n'
    else
        failed_checks+=("$name")
        cases+="  <testcase name=\"$name\" classname=\"checks\" time=\"$took\"><failure/></testcase>"$'\n'
        return 1
    fi
}

write_checks() {
    {
        echo '<?xml version="1.0" encoding="UTF-8"?>'
        echo "<testsuite name=\"checks\" tests=\"$((${#passed[@]} + ${#failed_checks[@]}))\" failures=\"${#failed_checks[@]}\" disabled=\"0\" skipped=\"0\">"
        printf '%s' "$cases"
        echo '</testsuite>'
    } >"$results/checks.xml"
}

# configure_and_build PRESET [TARGET ...]
configure_and_build() {
    local preset=$1
    shift
    cmake --preset "$preset" && cmake --build "build/$preset" -j "$jobs" --target "${@:-all}"
}

# ctest_in NAME PRESET [ARGUMENT ...]: runs the tests of the build, each a case in tests-NAME.xml.
ctest_in() {
    local name=$1 preset=$2
    shift 2
    step "$name" ctest --test-dir "build/$preset" -j "$jobs" --output-on-failure --no-tests=error \
        --output-junit "$results/tests-$name.xml" "$@"
}

# in_shards NAME COMMAND ...: runs the tests of a GoogleTest program in one process per processor, or in as many as
# $shards says; results in tests-NAME-N.xml. Faster than ctest if starting a process takes longer than most tests. The
# path of the results is relative, because Windows programs do not understand absolute paths from here.
in_shards() {
    local name=$1 shards=${shards:-$jobs} shard pid pids=() status=0
    shift
    for ((shard = 0; shard < shards; ++shard)); do
        GTEST_TOTAL_SHARDS=$shards GTEST_SHARD_INDEX=$shard "$@" \
            "--gtest_output=xml:${results#"$PWD/"}/tests-$name-$shard.xml" >"$results/logs/$name.log.$shard" 2>&1 &
        pids+=($!)
    done
    for pid in "${pids[@]}"; do
        wait "$pid" || status=$?
    done
    for ((shard = 0; shard < shards; ++shard)); do
        failures_of "$results/logs/$name.log.$shard"
    done
    return "$status"
}

# failures_of LOG: output of a GoogleTest program from tests that failed or did not end, and from outside of tests.
failures_of() {
    tr -d '\r' <"$1" | awk '
        /^\[ RUN      \]/ { inside = 1; test = "" }
        inside { test = test $0 "\n" }
        !inside && !/^(\[|Note: )/ && NF { print }
        /^\[ +(OK|SKIPPED) +\] .*\([0-9]+ ms\)$/ { inside = 0; test = "" }
        /^\[  FAILED  \] .*\([0-9]+ ms\)$/ { printf "%s", test; inside = 0; test = "" }
        END { printf "%s", test }'
}
