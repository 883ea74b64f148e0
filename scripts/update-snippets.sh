#!/usr/bin/env bash
# Copies the regions of the examples between "// [snippet]" and "// [/snippet]" into docs/cookbook.md, below the lines
# "<!-- snippet: NAME -->". With --check it changes nothing, and fails if the page differs from the examples.
cd "$(dirname "$0")/.."
. scripts/common.sh

PAGE=docs/cookbook.md

# Prints the regions of an example, separated by empty lines, without the indentation of their first markers.
snippet_of() {
    awk '
        /^ *\/\/ \[snippet\]$/ { if (count++) print ""; indent = match($0, /\//) - 1; inside = 1; next }
        /^ *\/\/ \[\/snippet\]$/ { inside = 0; next }
        inside { print substr($0, indent + 1) }
        END { if (!count || inside) { print FILENAME ": no complete snippet" > "/dev/stderr"; exit 1 } }
    ' "examples/$1.cpp"
}

# Prints the page with all blocks of code below markers replaced by the current snippets.
updated_page() {
    local line marker='^<!-- snippet: ([a-z_]+) -->$'
    while IFS= read -r line; do
        printf '%s\n' "$line"
        [[ $line =~ $marker ]] || continue
        printf '```cpp\n'
        snippet_of "${BASH_REMATCH[1]}" || return 1
        printf '```\n'
        IFS= read -r line && [[ $line == '```cpp' ]] || fail "no code block below: ${BASH_REMATCH[0]}"
        until [[ $line == '```' ]]; do
            IFS= read -r line || fail "no end of the code block below: ${BASH_REMATCH[0]}"
        done
    done <"$PAGE"
}

UPDATED=$(updated_page)
if [ "${1:-}" = --check ]; then
    diff -u "$PAGE" - <<<"$UPDATED" || fail "$PAGE differs from the examples; run scripts/update-snippets.sh"
else
    printf '%s\n' "$UPDATED" >"$PAGE"
fi
