"""Holds the scenario schema against scenarios that the simulator takes and those it refuses.

usage: check_schema.py SCHEMA GOOD_FOLDER BROKEN_FOLDER
"""

import json
import pathlib
import sys

import jsonschema

# What JSON Schema cannot say, or what is no JSON at all.
BEYOND_THE_SCHEMA = {"empty-file", "no-json", "not-closed", "same-place"}


def main():
    schema = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.Draft7Validator(schema)
    mistakes = []
    for path in sorted(pathlib.Path(sys.argv[2]).glob("*.json")):
        for error in validator.iter_errors(json.loads(path.read_text(encoding="utf-8"))):
            mistakes.append(f"{path.name}: {error.json_path}: {error.message}")
    refused = 0
    for path in sorted(pathlib.Path(sys.argv[3]).glob("*.json")):
        if path.stem in BEYOND_THE_SCHEMA:
            continue
        refused += 1
        if validator.is_valid(json.loads(path.read_text(encoding="utf-8"))):
            mistakes.append(f"{path.name}: the schema takes it")
    print("\n".join(mistakes) or f"the schema agrees, {refused} broken scenarios refused")
    return 1 if mistakes or not refused else 0


sys.exit(main())
