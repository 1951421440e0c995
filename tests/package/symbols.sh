# symbols.sh PREFIX: the shared libraries installed there export what debian/*.symbols list. If symbols are missing,
# applications that are linked with the library break.
set -euo pipefail
prefix=$1
cd "$(dirname "$0")/../.."
version=$(dpkg-parsechangelog -S Version)
found=0
for file in debian/*.symbols; do
    read -r soname package rest <"$file"
    for library in "$prefix"/lib*/"$soname" "$prefix"/lib/*/"$soname"; do
        if [ -e "$library" ]; then
            dpkg-gensymbols -c4 "-p$package" "-v$version" "-e$library" "-I$file" -O/dev/null
            found=$((found + 1))
        fi
    done
done
if [ "$found" -ne 3 ]; then
    echo "$found of 3 libraries found below $prefix" >&2
    exit 1
fi
