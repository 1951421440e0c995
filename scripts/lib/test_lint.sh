# Sourced by scripts/test.

# Left out of what cppcheck calls style and performance:
#   constParameter               handlers of calls have one shape
#   constVariable                wrong for pointers to functions, and for what a template returns
#   functionStatic               an iterator's end() is a member by habit
#   noExplicitConstructor        replies are published to convert to the results made of them
#   nullPointerRedundantCheck    overlooks [[noreturn]] where a macro follows it; clang-tidy checks the same better
#   passedByValue                published signatures take texts and pointers by value
#   shadowFunction               -Wshadow tells what matters
#   unusedStructMember           overlooks structured bindings and constant arrays
#   useStlAlgorithm              a loop may read better
run_cppcheck() {
    local id suppressions=()
    for id in constParameter constVariable functionStatic noExplicitConstructor nullPointerRedundantCheck \
        passedByValue shadowFunction unusedStructMember useStlAlgorithm; do
        suppressions+=("--suppress=$id")
    done
    cppcheck -j "$jobs" --error-exitcode=1 --std=c++20 --inline-suppr --library=scripts/lib/cppcheck.cfg -I . \
        --enable=warning,performance,portability,style "${suppressions[@]}" tavo
}

# Builds nothing: clang-tidy needs only the compile commands and generated files of build/test.
run_clang_tidy() {
    local here
    here=$(printf '%s' "$PWD" | sed 's/[^A-Za-z0-9_/ -]/\\&/g')
    cmake --preset test && run-clang-tidy-14 -p build/test -quiet -j "$jobs" "^$here/(build/test/)?tavo/.*\.cpp$"
}

test_lint() {
    check cppcheck run_cppcheck || true
    check clang-tidy run_clang_tidy || true
}
