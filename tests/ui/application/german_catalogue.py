#!/usr/bin/env python3
"""Every text the sources look up has a finished German translation: the literals in the first
argument of localized(…), localizedCount(…) and tr(…), both arms of a choice between two
included; counted texts need their singular and plural.

Usage: german_catalogue.py SOURCE_ROOT"""
import pathlib, re, sys
import xml.etree.ElementTree as ElementTree

root = pathlib.Path(sys.argv[1])
CALL = re.compile(r"\b(localizedCount|localized|tr)\s*\(")
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')


def first_argument(text, open_at):
    depth, in_string, at = 0, False, open_at
    while at < len(text):
        c = text[at]
        if in_string:
            if c == "\\":
                at += 1
            elif c == '"':
                in_string = False
        elif c == '"':
            in_string = True
        elif c == "(":
            depth += 1
        elif c == ")" or (c == "," and depth == 1):
            depth -= c == ")"
            if depth == 0 or c == ",":
                return text[open_at + 1:at]
        at += 1
    return ""


plain, counted = set(), set()
for path in (root / "src").rglob("*"):
    if path.suffix in (".cpp", ".h", ".mm"):
        text = path.read_text(encoding="utf-8")
        for call in CALL.finditer(text):
            found = LITERAL.findall(first_argument(text, call.end() - 1))
            (counted if call[1] == "localizedCount" else plain).update(found)

german = {}
for context in ElementTree.parse(root / "resources/translations/voltaro_de.ts").iter("context"):
    if context.findtext("name") != "Voltaro":
        continue
    for message in context.iter("message"):
        translation = message.find("translation")
        numerus = message.get("numerus") == "yes"
        forms = [f.text for f in translation.iter("numerusform")] if numerus else [translation.text]
        finished = translation.get("type") is None and all(forms) and len(forms) == (2 if numerus else 1)
        german[message.findtext("source")] = (numerus, finished)

problems = []
# A scanner that finds nothing would pass anything.
if len(plain) < 30 or counted != {"%n hour(s)", "%n minute(s)"}:
    problems.append(f"scanner found {len(plain)} texts and counted ones {sorted(counted)}")
for text in sorted(plain | counted):
    numerus, finished = german.get(text, (None, False))
    if numerus is None:
        problems.append(f'no German for "{text}"')
    elif not finished or numerus != (text in counted):
        problems.append(f'unfinished German (or wrong plural forms) for "{text}"')
print("\n".join(problems) or f"{len(plain) + len(counted)} texts, all in German")
sys.exit(1 if problems else 0)
