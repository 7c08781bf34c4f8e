#!/usr/bin/env bash
# Includes point down only: platform <- core <- formats <- dialog; sources use platform alone; only
# sources and tools know other people's headers.
#
#   layers.sh SOURCE_DIR
set -euo pipefail
cd "$1/norva"
bad=0

# forbid FOLDER PATTERN: no file below FOLDER includes what PATTERN matches.
forbid() {
    if grep -rnE "#include <norva/($2)/" "$1"; then
        echo "norva/$1 must not include that" >&2
        bad=1
    fi
}
forbid platform 'core|formats|dialog|sources'
forbid core 'formats|dialog|sources'
forbid formats 'dialog|sources'
forbid dialog 'sources'
forbid sources 'core|formats|dialog'
# No format includes another one's folder.
for family in formats/*/; do
    family=$(basename "$family")
    if grep -rnE '#include <norva/formats/' "formats/$family" --include='*.h' --include='*.cpp' |
        grep -v "<norva/formats/$family/"; then
        echo "norva/formats/$family must not include that" >&2
        bad=1
    fi
done
if grep -rnE '#include <(sqlite3|sql|CLI|Q[A-Z])' platform core formats sources/memory; then
    echo "only sources and tools may use other libraries" >&2
    bad=1
fi
exit $bad
