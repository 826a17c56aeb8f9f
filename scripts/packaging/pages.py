"""Turns the documents into HTML pages that read well without a network: one file each, links between them kept."""

import html
import os
import re
import subprocess

STYLE = """
:root { color-scheme: light dark; }
body { font: 16px/1.5 system-ui, "Segoe UI", sans-serif; max-width: 62em; margin: 2em auto; padding: 0 1em; }
code, pre { font-family: Consolas, "Cascadia Mono", monospace; font-size: 0.9em; }
pre { overflow-x: auto; padding: 0.8em; border: 1px solid #8884; border-radius: 4px; }
table { border-collapse: collapse; display: block; overflow-x: auto; }
th, td { border: 1px solid #8886; padding: 0.3em 0.6em; text-align: left; vertical-align: top; }
img { max-width: 100%; }
nav { font-size: 0.9em; }
"""


def slug(heading):
    """The anchor of a heading, as the documents' links name it."""
    text = html.unescape(re.sub(r"<[^>]*>", "", heading)).strip().lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def page_name(document):
    return "README.html" if document == "README.md" else re.sub(r"\.md$", ".html", document)


def render(root, document, present):
    """The document as a page. `present`: the files that lie beside it in the archive, by their path in the tree."""
    body = subprocess.run(["cmark-gfm", "--extension", "table", "--unsafe", os.path.join(root, document)], check=True,
                          capture_output=True, text=True).stdout

    def link(match):
        attribute, target, rest = match.groups()
        if re.match(r"[a-z]+:", target):
            return match[0]
        path, _, anchor = html.unescape(target).partition("#")
        found = os.path.normpath(os.path.join(os.path.dirname(document), path)) if path else document
        if found not in present and not any(name.startswith(found.rstrip("/") + "/") for name in present):
            # What is not in the archive is named, not linked.
            return re.sub(r"\w+=$", "title=", attribute) + '"not in this archive"' + rest if attribute == "href=" else match[0]
        target = (page_name(path) if path.endswith(".md") else path) + ("#" + anchor if anchor else "")
        return f'{attribute}"{html.escape(target)}"{rest}'

    body = re.sub(r'(href=|src=)"([^"]*)"()', link, body)
    used = {}

    def heading(match):
        level, text = match.groups()
        name = slug(text)
        used[name] = used.get(name, -1) + 1
        name += f"-{used[name]}" if used[name] else ""
        return f'<h{level} id="{name}">{text}</h{level}>'

    body = re.sub(r"<h([1-6])>(.*?)</h\1>", heading, body, flags=re.S)
    title = re.search(r"<h1[^>]*>(.*?)</h1>", body, re.S)
    title = re.sub(r"<[^>]*>", "", title[1]) if title else document
    home = os.path.relpath("README.html", os.path.dirname(document) or ".")
    navigation = f'<nav><a href="{home}">Brisk</a></nav>\n' if "README.md" in present and document != "README.md" else ""
    return (f'<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n'
            f'<meta name="viewport" content="width=device-width">\n<title>{title}</title>\n<style>{STYLE}</style>\n'
            f"</head>\n<body>\n{navigation}{body}</body>\n</html>\n").encode()


def pages(root, documents, others=()):
    """The documents' pages by their path in the archive. `others`: files of the tree that lie in the archive as well."""
    present = set(documents) | set(others)
    return {page_name(document): render(root, document, present) for document in documents}
