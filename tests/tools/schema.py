"""The JSON documents of the command are valid under docs/schema: schema.py KEM SCHEMA FILE..."""
import json
import subprocess
import sys
import tempfile

import jsonschema

kem, schema, *files = sys.argv[1:]
with open(schema, encoding="utf-8") as text:
    definitions = json.load(text)
jsonschema.Draft7Validator.check_schema(definitions)
def check(name, text, least):
    document = json.loads(text)
    jsonschema.validate(document, {"$ref": "#/definitions/" + name, "definitions": definitions["definitions"]})
    if len(document) < least:
        sys.exit(f"kem {name} tells of {len(document)} of {least} files")


commands = ["info", "items", "check", "identify", "stats", "integrate", "histogram", "formats", "value -x 440 -y 2"]
for command in commands:
    few = {"formats": [], "value -x 440 -y 2": files[-1:]}.get(command, files)
    done = subprocess.run([kem, *command.split(), "--json", *few], stdout=subprocess.PIPE)
    check(command.split()[0], done.stdout, len(few))
with tempfile.TemporaryDirectory() as folder:
    words = [kem, "convert", "--quiet", "--to", "csv", "--dir", folder, "--report", folder + "/r", *files]
    subprocess.run(words, stderr=subprocess.DEVNULL)
    with open(folder + "/r", encoding="utf-8") as text:
        check("report", text.read(), len(files))
