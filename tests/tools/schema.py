"""The JSON documents of the command are valid under docs/schema: schema.py KEM SCHEMA FILE..."""
import json
import subprocess
import sys

import jsonschema

kem, schema, *files = sys.argv[1:]
with open(schema, encoding="utf-8") as text:
    definitions = json.load(text)
jsonschema.Draft7Validator.check_schema(definitions)
for command in ["info", "items", "check", "identify", "formats"]:
    words = [kem, command, "--json"] + (files if command != "formats" else [])
    document = json.loads(subprocess.run(words, stdout=subprocess.PIPE).stdout)
    rule = {"$ref": "#/definitions/" + command, "definitions": definitions["definitions"]}
    jsonschema.validate(document, rule)
    if command != "formats" and len(document) < len(files):
        sys.exit(f"kem {command} tells of {len(document)} of {len(files)} files")
