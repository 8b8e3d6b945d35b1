#!/usr/bin/env python3
"""Checks that the dumps of documents satisfy the dump's JSON Schema (docs/dump.schema.json),
in both reading modes, and that the schema refuses a dump whose notification has no location.

    validate_dumps.py ZYLDAE SCHEMA DOCUMENT_OR_FOLDER...
A folder stands for its .dae files of under 300 KB (a missing folder for none), so that the
third-party corpus is used where it is present.
Exits 0 when every dump is valid, 1 when one is not, 77 (skipped) without the jsonschema module.
"""
import json
import os
import subprocess
import sys

try:
    import jsonschema
except ImportError:
    print("python3-jsonschema is not installed: skipped")
    sys.exit(77)


def documents_of(arguments):
    for argument in arguments:
        if not os.path.isdir(argument):
            if os.path.exists(argument) or not argument.endswith("corpus"):
                yield argument
            continue
        for root, _, files in sorted(os.walk(argument)):
            for name in sorted(files):
                path = os.path.join(root, name)
                if name.endswith(".dae") and os.path.getsize(path) < 300_000:
                    yield path


def main():
    zyldae, schema_path = sys.argv[1], sys.argv[2]
    documents = list(documents_of(sys.argv[3:]))
    with open(schema_path) as schema_file:
        schema = json.load(schema_file)
    validator = jsonschema.Draft202012Validator(schema)
    failures = 0
    checked = 0
    for document in documents:
        for mode in ([], ["--complete"]):
            run = subprocess.run([zyldae, "dump", *mode, document], capture_output=True, text=True)
            if run.returncode not in (0, 1):
                print(f"{document} {mode}: exit {run.returncode}: {run.stderr.strip()}")
                failures += 1
                continue
            dump = json.loads(run.stdout)
            errors = list(validator.iter_errors(dump))
            for error in errors[:5]:
                print(f"{document} {mode}: {'/'.join(map(str, error.absolute_path))}: {error.message}")
            failures += bool(errors)
            checked += 1
    # The schema must hold the locations: the same dump without them is refused.
    unlocated = {"dump": 2, "file": "x", "ok": True, "lastError": {"id": 0, "text": ""}, "errorText": "",
                 "notifications": [{"code": 6, "text": "Warning: x"}], "scene": None}
    if validator.is_valid(unlocated):
        print("the schema accepts a notification without line and element")
        failures += 1
    print(f"{checked} dumps checked, {failures} failures")
    return 1 if failures or not checked else 0


sys.exit(main())
