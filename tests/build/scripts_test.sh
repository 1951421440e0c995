# scripts_test.sh FOLDER: what the scripts say and count, without building anything. The folder is its own.
set -euo pipefail
work=$1
cd "$(dirname "$0")/../.."
rm -rf "$work"
mkdir -p "$work/results" "$work/none" "$work/progress"
mistakes=0

# expect WHAT EXPECTED ACTUAL
expect() {
    if [ "$2" != "$3" ]; then
        printf '%s\n  expected: %s\n  found:    %s\n' "$1" "$2" "$3" >&2
        mistakes=$((mistakes + 1))
    fi
}

# --- the options of scripts/test
status=0
help=$(scripts/test --help) || status=$?
expect "status of --help" 0 "$status"
for file in scripts/lib/test_*.sh; do
    kind=$(basename "$file" .sh)
    kind=${kind#test_}
    status=$(grep -c "^scripts/test --$kind " <<<"$help") || true
    expect "lines of --help about --$kind" "$([ "$kind" = base ] && echo 0 || echo 1)" "$status"
done
status=0
errors=$(scripts/test --lint --nonsense 2>&1 >"$work/output") || status=$?
expect "status of an unknown option" 2 "$status"
expect "first line of an unknown option" "scripts/test: unknown option '--nonsense'" "$(head -n 1 <<<"$errors")"
expect "what an unknown option starts" "" "$(cat "$work/output")"

# --- the options of scripts/bench
status=0
errors=$(scripts/bench --peers --only batch 2>&1) || status=$?
expect "status of --peers with another option" 2 "$status"
expect "what is wrong with it" "scripts/bench: --peers takes no option but --docs: --only batch" "$errors"

# --- the sum of result files
. scripts/lib/results.sh
cat >"$work/results/tests-a.xml" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<testsuites tests="7" failures="2" disabled="1" errors="0" time="0.1" name="AllTests">
  <testsuite name="One" tests="4" failures="2" disabled="0" skipped="1" errors="0">
    <testcase name="a" status="run" result="skipped" classname="One"/>
  </testsuite>
</testsuites>
END
cat >"$work/results/tests-b.xml" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<testsuite name="(empty)"
	tests="10"
	failures="1"
	disabled="0"
	skipped="3"
	time="1">
	<testcase name="b" status="run"/>
</testsuite>
END
# Of 17 cases 3 failed, and 1 + 1 + 3 were not run.
count_results "$work/results" 1
expect "sum of two files" "5 skipped
9 passed, 3 failed" "$(tell_sum)"
# Nothing was counted, so the status is all that is known.
count_results "$work/none" 1
count_results "$work/none" 0
expect "sum with a run that broke off" "5 skipped
9 passed, 4 failed" "$(tell_sum)"
rm "$work/results/tests-a.xml"
sed -i 's/failures="1"/failures="0"/' "$work/results/tests-b.xml"
cases_passed=0 cases_failed=0 cases_skipped=0
count_results "$work/results" 1
expect "sum of passed cases in a run that failed" "3 skipped
7 passed, 1 failed" "$(tell_sum)"

# --- how far a command is
. scripts/lib/progress.sh
log=$work/progress/log
printf '%s\n' '-- Configuring done' '[1/312] Building [9/9]' '[120/312] Building' 'ninja: [7/8]' >"$log"
expect "progress of ninja" "120 312" "$(how_far "$log")"
printf '%s\n' '      Start  1: a' '   1/1993 Test  #1: a ...   Passed' '  22/1993 Test #15: b ...***Failed' >"$log"
expect "progress of ctest" "22 1993" "$(how_far "$log")"
printf '%s\n' 'Checking a.cpp ...' '5/161 files checked 3% done' >"$log"
expect "progress of cppcheck" "5 161" "$(how_far "$log")"
printf '%s\r\n' '[==========] Running 10 tests from 3 test suites.' '[ RUN      ] A.b' '[       OK ] A.b (0 ms)' \
    '[ RUN      ] A.c' '[  FAILED  ] A.c (12 ms)' '[ RUN      ] A.d' '[  SKIPPED ] A.d (0 ms)' >"$log.0"
printf '%s\n' '[==========] Running 1 test from 1 test suite.' '[ RUN      ] A.e' '[       OK ] A.e (0 ms)' \
    '[  FAILED  ] 1 test, listed below:' '[  FAILED  ] A.c' >"$log.1"
expect "progress of GoogleTest in two processes" "4 11" "$(how_far "$log.0" "$log.1")"
: >"$log"
expect "progress without a count" "" "$(how_far "$log")"

work_in_parts() {
    local part
    for part in 1 2 3 4; do
        echo "[$part/4] part"
        sleep 0.6
    done
    echo "to the log alone"
    return 3
}
progress_look=0.2
status=0
rm -f "$log".*
said=$(with_progress parts "$log" work_in_parts) || status=$?
expect "status of a command that is watched" 3 "$status"
expect "last of its log" "to the log alone" "$(tail -n 1 "$log")"
# Under load a look may come late, but never twice for the same tenth.
grep -q '^parts: [1-4] of 4, [0-9]* s$' <<<"$said" || expect "progress that is told" "parts: N of 4, N s" "$said"
expect "progress that is told twice" "" "$(sed 's/,.*//' <<<"$said" | uniq -d)"
expect "progress of another kind" "" "$(grep -v '^parts: [1-4] of 4, [0-9]* s$' <<<"$said" || true)"

# On a terminal it stays in one line, which the outcome takes over.
cat >"$work/progress/terminal.sh" <<'END'
. scripts/lib/progress.sh
part() { echo '[3/4] part' && sleep 4; }
with_progress parts "$1" part
END
said=$(script -qec "bash '$work/progress/terminal.sh' '$log'" /dev/null </dev/null)
grep -q $'^\r\033\\[Kparts  *3 of 4, [0-9]* s\r\033\\[K' <<<"$said" || expect "progress on a terminal" "3 of 4" "$said"
expect "lines of progress on a terminal" 1 "$(wc -l <<<"$said")"

# --- what is shown of tests that failed
jobs=2
results=$work/results
. scripts/lib/checks.sh
printf '%s\n' 'Note: this is shard 1' '[==========] Running 3 tests' '[ RUN      ] A.good' 'chatter' '[       OK ] A.good (0 ms)' \
    '[ RUN      ] A.bad' 'a.cpp:1: Failure' '[  FAILED  ] A.bad (1 ms)' 'leak' '[ RUN      ] A.crash' >"$log"
expect "failures of a log" "[ RUN      ] A.bad
a.cpp:1: Failure
[  FAILED  ] A.bad (1 ms)
leak
[ RUN      ] A.crash" "$(failures_of "$log")"

[ "$mistakes" -eq 0 ]
