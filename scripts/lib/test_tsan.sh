# Sourced by scripts/test.

test_tsan() {
    if check tsan-build configure_and_build tsan; then
        ctest_in tsan tsan || true
    fi
}
