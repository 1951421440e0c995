# Sourced by scripts/test.

test_quick() {
    if check quick-build configure_and_build quick tavo_tests; then
        step quick in_shards quick timeout 300 build/quick/tests/tavo_tests || true
    fi
}
