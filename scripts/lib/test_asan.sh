# Sourced by scripts/test.

test_asan() {
    if check asan-build configure_and_build asan; then
        ctest_in asan asan || true
    fi
}
