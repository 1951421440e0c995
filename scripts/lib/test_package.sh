# Sourced by scripts/test.

test_package() {
    check packages scripts/package --test || true
    # Without what the other tests share, which needs the built package.
    check python-package env TAVO_TEST_PACKAGE=1 PYTHONDONTWRITEBYTECODE=1 \
        /usr/bin/python3 -m pytest -q -p no:cacheprovider --noconftest python/tests/test_package.py || true
}
