#!/usr/bin/env bash
# Compares the dumps of two builds of zyldae on every example and corpus document: a change
# that must keep the default reading as it was shows no difference here.
#   scripts/compare-dumps.sh OLD_ZYLDAE NEW_ZYLDAE [EXTRA_ARGS...]
# Extra arguments (for example --complete) go to both. Exits 1 when any dump differs.
# What is compared is what was read: the dump's version and the notifications' locations
# (added in dump version 2) are left out, so that builds before and after them compare.
set -uo pipefail
old=$1 new=$2
shift 2
here=$(cd "$(dirname "$0")/.." && pwd)
corpus=${CORPUS:-$here/../shared/corpus}
differ=0 total=0
without_locations() {
  python3 -c '
import json, sys
text = sys.stdin.read()
try:
    dump = json.loads(text)
except ValueError:
    sys.stdout.write(text)
    sys.exit()
for document in dump if isinstance(dump, list) else [dump]:
    document.pop("dump", None)
    for detail in document.get("notifications", []):
        detail.pop("line", None)
        detail.pop("element", None)
json.dump(dump, sys.stdout, indent=1)
'
}
while IFS= read -r -d '' file; do
  total=$((total + 1))
  a=$(timeout 60 "$old" dump "$@" "$file" 2>&1 | without_locations; echo "exit ${PIPESTATUS[0]}")
  b=$(timeout 60 "$new" dump "$@" "$file" 2>&1 | without_locations; echo "exit ${PIPESTATUS[0]}")
  if [ "$a" != "$b" ]; then
    differ=$((differ + 1))
    echo "differs: $file"
  fi
done < <(find "$here/examples" "$here/tests/data" "$corpus" -name '*.dae' -print0 2>/dev/null | sort -z)
echo "$differ of $total documents differ"
[ "$differ" -eq 0 ]
