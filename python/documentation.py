"""Makes the table of documentation that the extension module holds of the stub: documentation.py STUB HEADER."""

import ast
import json
import sys
from pathlib import Path


def signature(node):
    arguments = [argument for argument in node.args.args if argument.arg != "self"]
    for argument in arguments:
        argument.annotation = None
    return f"{node.name}({ast.unparse(ast.arguments([], arguments, None, [], [], None, node.args.defaults))})"


def texts(body, within=""):
    for node in body:
        if not isinstance(node, (ast.ClassDef, ast.FunctionDef)) or not (text := ast.get_docstring(node)):
            continue
        is_call = isinstance(node, ast.FunctionDef) and "property" not in map(ast.unparse, node.decorator_list)
        yield within + node.name, f"{signature(node)}\n\n{text}" if is_call else text
        if isinstance(node, ast.ClassDef):
            yield from texts(node.body, node.name + ".")


stub, header = map(Path, sys.argv[1:])
rows = [f"    {{{json.dumps(name)}, {json.dumps(text)}}}," for name, text in texts(ast.parse(stub.read_text()).body)]
header.write_text("\n".join(["constexpr Documentation kDocumentation[] = {", *rows, "};", ""]))
