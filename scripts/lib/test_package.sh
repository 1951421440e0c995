# Sourced by scripts/test.

test_package() {
    check packages scripts/package --test || true
}
