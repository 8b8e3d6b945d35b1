#!/usr/bin/env bash
# Compares the dumps of two builds of zyldae on every example and corpus document: a change
# that must keep the default reading as it was shows no difference here.
#   scripts/compare-dumps.sh OLD_ZYLDAE NEW_ZYLDAE [EXTRA_ARGS...]
# Extra arguments (for example --complete) go to both. Exits 1 when any dump differs.
set -uo pipefail
old=$1 new=$2
shift 2
here=$(cd "$(dirname "$0")/.." && pwd)
corpus=${CORPUS:-$here/../shared/corpus}
differ=0 total=0
while IFS= read -r -d '' file; do
  total=$((total + 1))
  a=$(timeout 60 "$old" dump "$@" "$file" 2>&1; echo "exit $?")
  b=$(timeout 60 "$new" dump "$@" "$file" 2>&1; echo "exit $?")
  if [ "$a" != "$b" ]; then
    differ=$((differ + 1))
    echo "differs: $file"
  fi
done < <(find "$here/examples" "$here/tests/data" "$corpus" -name '*.dae' -print0 2>/dev/null | sort -z)
echo "$differ of $total documents differ"
[ "$differ" -eq 0 ]
