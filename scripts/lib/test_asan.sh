# Sourced by scripts/test.

test_asan() {
    if check asan-build configure_and_build asan; then
        # Many tests wait, which leaves a processor for others.
        shards=$((2 * jobs)) step asan in_shards asan timeout 1200 build/asan/tests/tavo_tests || true
        ctest_in asan-examples asan -R '^(examples|lifetimes)[.]' || true
    fi
}
