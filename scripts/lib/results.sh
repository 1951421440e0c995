# Sourced by scripts/test and .ci/run: sums up result files.

cases_passed=0
cases_failed=0
cases_skipped=0

# attribute_sum NAME FILE ...: sum of an attribute over the outermost element of each file.
attribute_sum() {
    local name=$1 file total=0 count
    shift
    for file in "$@"; do
        count=$(tr '\n\t' '  ' <"$file" | grep -o '<testsuites\? [^>]*' | head -n 1 | sed -n "s/.* $name=\"\([0-9]*\)\".*/\1/p") || true
        total=$((total + ${count:-0}))
    done
    echo "$total"
}

# count_results FOLDER STATUS: adds up the JUnit files of a run that ended with this status. A run that failed without a
# failed case broke off early: that counts as a failure too.
count_results() {
    local folder=$1 status=$2 file files=() failures=0 skipped=0 tests=0
    for file in "$folder"/*.xml; do
        [ ! -f "$file" ] || files+=("$file")
    done
    if [ ${#files[@]} -gt 0 ]; then
        failures=$(attribute_sum failures "${files[@]}")
        tests=$(attribute_sum tests "${files[@]}")
        # GoogleTest reports skipped tests only at the case.
        skipped=$(($(attribute_sum skipped "${files[@]}") + $(attribute_sum disabled "${files[@]}") +
            $(cat "${files[@]}" | awk '/result="skipped"/ { ++n } END { print n + 0 }')))
    fi
    cases_passed=$((cases_passed + tests - failures - skipped))
    cases_skipped=$((cases_skipped + skipped))
    if [ "$status" -ne 0 ] && [ "$failures" -eq 0 ]; then
        failures=1
    fi
    cases_failed=$((cases_failed + failures))
}

# tell_sum: prints "N passed, N failed" as the last line.
tell_sum() {
    if [ "$cases_skipped" -ne 0 ]; then
        echo "$cases_skipped skipped"
    fi
    echo "$cases_passed passed, $cases_failed failed"
}
