"""The tables of formats in docs/loading.md are those of kem formats; KEM_APPROVE=1 writes them: tables.py KEM PAGE."""
import json
import os
import subprocess
import sys

kem, page = sys.argv[1:]
formats = json.loads(subprocess.run([kem, "formats", "--json"], stdout=subprocess.PIPE, check=True).stdout)
rows = ["| read | files |", "|---|---|"]
for row in formats["read"]:
    rows.append(f"| {row['name']} | {', '.join(f'`{e}`' for e in row['extensions']) or 'by content'} |")
rows += ["", "| written | |", "|---|---|"]
rows += [f"| `{row['name']}` | {row['what']} |" for row in formats["written"]]
table = "\n".join(rows) + "\n"

first, last = "<!-- formats: made by tests/tools/tables.py -->\n", "<!-- formats end -->"
with open(page, encoding="utf-8") as file:
    text = file.read()
before, rest = text.split(first)
found, after = rest.split(last)
if os.environ.get("KEM_APPROVE"):
    with open(page, "w", encoding="utf-8") as file:
        file.write(before + first + table + last + after)
elif found != table:
    sys.exit("docs/loading.md has other tables of formats; KEM_APPROVE=1 writes them")
