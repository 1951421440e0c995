# Sourced by scripts/test.

test_tsan() {
    if check tsan-build configure_and_build tsan tavo_tests; then
        step tsan in_shards tsan timeout 1200 build/tsan/tests/tavo_tests || true
    fi
}
