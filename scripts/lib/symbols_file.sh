# Sourced by scripts/package: writes the symbols files of the shared libraries.

# What the compiler makes of templates of the standard library and of asio differs from one compiler to the next.
standard_symbols='^_Z(GV|GVZ|Z)?(T[ISV])?N?K?(St|Sa|Ss|9__gnu_cxx|4asio)'

# write_symbols LIBRARY PACKAGE VERSION: prints the symbols file. A name that was there before keeps the version that
# debian/PACKAGE.symbols gives it. Weak functions come from templates, which another compiler may inline. VERSION ends in
# ~, because what is missing is told only in a later version than the one that it came with.
write_symbols() {
    local library=$1 package=$2 version=$3 soname
    soname=$(objdump -p "$library" | awk '$1 == "SONAME" { print $2 }')
    printf '%s %s #MINVER#\n* Build-Depends-Package: libtavo-client-dev\n' "$soname" "$package"
    printf ' (optional|regex)"%s.*@Base$" %s\n' "$standard_symbols" "$version"
    paste -d ' ' <(nm -D --defined-only "$library") <(nm -D --defined-only "$library" | cut -d ' ' -f 3 | c++filt) |
        awk -v "standard=$standard_symbols" -v "version=$version" -v "old=debian/$package.symbols" '
            BEGIN {
                while ((getline line < old) > 0)
                    if (match(line, /".*@Base"/))
                        since[substr(line, RSTART, RLENGTH)] = substr(line, RSTART + RLENGTH + 1)
            }
            $3 !~ standard {
                weak = $2 == "W" || $2 == "u"
                sub(/^[^ ]+ [^ ]+ [^ ]+ /, "")
                name = "\"" $0 "@Base\""
                printf " (%s)%s %s\n", weak ? "c++|optional" : "c++", name, name in since ? since[name] : version
            }' | LC_ALL=C sort -u
}
