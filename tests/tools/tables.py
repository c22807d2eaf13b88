"""The tables of formats in README.md are those of kem formats; KEM_APPROVE=1 writes them: tables.py KEM README."""
import json
import os
import subprocess
import sys

kem, readme = sys.argv[1:]
formats = json.loads(subprocess.run([kem, "formats", "--json"], stdout=subprocess.PIPE, check=True).stdout)
rows = ["| read | files |", "|---|---|"]
for row in formats["read"]:
    rows.append(f"| {row['name']} | {', '.join(f'`{e}`' for e in row['extensions']) or 'by content'} |")
rows += ["", "| written | |", "|---|---|"]
rows += [f"| `{row['name']}` | {row['what']} |" for row in formats["written"]]
table = "\n".join(rows) + "\n"

first, last = "<!-- formats: made by tests/tools/tables.py -->\n", "<!-- formats end -->"
with open(readme, encoding="utf-8") as file:
    text = file.read()
before, rest = text.split(first)
found, after = rest.split(last)
if os.environ.get("KEM_APPROVE"):
    with open(readme, "w", encoding="utf-8") as file:
        file.write(before + first + table + last + after)
elif found != table:
    sys.exit("README.md has other tables of formats; KEM_APPROVE=1 writes them")
