# Sourced by scripts/test.

test_fuzz() {
    check fuzzers scripts/fuzz --replay || true
}
