#!/usr/bin/env python3
"""Writes the entry points of the null GL library from the system's own GL headers.

usage: generate.py OUTPUT ANSWERS HEADER...
Each entry point counts its call and returns zero, unless ANSWERS (a C++ header) declares NullAnswer_NAME for it.
"""
import pathlib
import re
import sys

PROTOTYPE = re.compile(r"^\s*GLAPI\s+([\w\s*]+?)\s*(?:GL)?APIENTRY\s+(gl\w+)\s*\(([^)]*)\)\s*;", re.M)
NAME = re.compile(r"(\w+)\s*(?:\[\d*\])?\s*$")


def parameters(text):
    """(declaration, names) of a parameter list, each parameter with a name of its own."""
    text = " ".join(text.split())
    if text in ("", "void"):
        return "", ""
    declared, names = [], []
    for number, one in enumerate(text.split(",")):
        array = "[" in one
        kind = NAME.sub("", one).strip() if NAME.search(one) else one.strip()
        declared.append(f"{kind}{'*' if array else ''} p{number}")
        names.append(f"p{number}")
    return ", ".join(declared), ", ".join(names)


def main(output, answers, *headers):
    answered = set(re.findall(r"NullAnswer_(gl\w+)", pathlib.Path(answers).read_text()))
    found = {}
    for header in headers:
        for result, name, text in PROTOTYPE.findall(pathlib.Path(header).read_text()):
            found.setdefault(name, (" ".join(result.split()), *parameters(text)))
    names = sorted(found)
    lines = ["// Generated; see bench/null_gl/generate.py.", "#define GL_GLEXT_LEGACY", "#include <GL/gl.h>",
             "#include <GL/glext.h>",
             f'#include "{pathlib.Path(answers).name}"',
             f"unsigned long long g_uNullCalls[{len(names) + 1}];",
             "unsigned g_uNullEntries = " + str(len(names)) + ";"]
    for index, name in enumerate(names):
        result, declared, passed = found[name]
        body = f"return NullAnswer_{name}({passed});" if name in answered else \
            ("" if result == "void" else f"return static_cast<{result}>(0);" if "*" not in result else "return nullptr;")
        plain = declared if name in answered else re.sub(r"\bp\d+\b", "", declared)
        lines.append(f'extern "C" __attribute__((visibility("default"))) {result} {name}({plain}) '
                     f"{{ ++g_uNullCalls[{index}]; {body} }}")
    lines.append("const NullEntry g_stNullEntries[] = {")
    lines += [f'    {{"{name}", reinterpret_cast<void*>(&{name})}},' for name in names]
    lines.append('    {nullptr, nullptr}};')
    pathlib.Path(output).write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
