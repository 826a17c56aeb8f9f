#!/usr/bin/env python3
"""Packs what scripts/package has built: pack.py ROOT DIST VERSION COMMIT MOMENT"""

import hashlib
import os
import re
import sys
import time

import archives
import pages
import parts

root, dist, version, commit, moment = sys.argv[1:]
moment = int(moment)
created = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(moment))


def read(path):
    with open(os.path.join(root, path), "rb") as file:
        return file.read()


def below(folder, *endings):
    """Paths of the files below a folder of the tree."""
    found = []
    for place, _, names in os.walk(os.path.join(root, folder)):
        for name in names:
            if not endings or name.endswith(endings):
                found.append(os.path.relpath(os.path.join(place, name), root))
    return sorted(found)


def crlf(text):
    return text.replace(b"\r\n", b"\n").replace(b"\n", b"\r\n")


def tree_files(paths):
    return {path: read(path) for path in paths}


def images_of(documents):
    """The pictures that the documents show, by their paths in the tree."""
    return sorted({os.path.normpath(os.path.join(os.path.dirname(document), target)) for document in documents
                   for target in re.findall(r"!\[[^\]]*\]\(([^)]*)\)", read(document).decode())})


def finish(name, files, kinds):
    """Adds the notices and the bill of materials, and writes the archive."""
    if kinds:
        used = parts.linked(kinds)
        notices = parts.notices(used)
        files["NOTICES.txt"] = crlf(notices) if name.endswith(".zip") else notices
        base = name.removesuffix(".zip").removesuffix(".tar.gz")
        files[base + ".spdx.json"] = parts.bill(base, version, commit, created, used, files)
    archives.write(os.path.join(dist, name), files, moment)


def built(folder):
    return {os.path.basename(path): read(path) for path in below(folder, ".exe")
            if os.path.dirname(path) == folder}


documents = ["README.md", "CHANGELOG.md", "CONTRIBUTING.md", *below("docs", ".md")]
examples = below("examples")
title_examples = [path for path in examples if not path.startswith("examples/host/")]
images = images_of(documents)
schema = "docs/titles_db.schema.json"

# The service and its tools.
programs = built("build/release")
finish(f"brisk-{version}-windows-x64.zip", {
    **programs, **tree_files(title_examples), **tree_files([*images, schema]), "include/BriskHost.h": read("include/BriskHost.h"),
    **pages.pages(root, documents, [*title_examples, *images, schema, "include/BriskHost.h"]),
}, ["windows", "json", "cli", "dtl"])

# For those who write a host.
host_documents = ["docs/host-interface.md", "docs/log.md", "docs/security.md", "CHANGELOG.md"]
host_examples = [path for path in examples if path.startswith("examples/host/")]
finish(f"brisk-hostkit-{version}.zip", {
    "include/BriskHost.h": read("include/BriskHost.h"), "briskhost.exe": programs["briskhost.exe"],
    **tree_files([*host_examples, *images_of(host_documents)]),
    **pages.pages(root, host_documents, ["include/BriskHost.h", *host_examples, *images_of(host_documents)]),
}, ["windows", "json", "cli"])

# For those who write title databases, on Linux.
title_documents = ["docs/title-database.md", "docs/title-tool.md", "docs/title-ci.md", "docs/title-rules.md",
                   "docs/text-files.md", "docs/log.md", "CHANGELOG.md"]
finish(f"brisktitles-{version}-linux-x64.tar.gz", {
    **{name: read("build/release-linux/" + name) for name in ("brisktitles", "brisklog")},
    **tree_files([*title_examples, schema, *images_of(title_documents)]),
    **pages.pages(root, title_documents, [*title_examples, schema, *images_of(title_documents)]),
}, ["linux", "json", "cli", "dtl"])

# The tests, in the folders of the checkout, for a Windows machine: as write-selftest left them.
selftest = below("build/selftest")
finish(f"brisk-selftest-{version}.zip", {
    **{os.path.relpath(path, "build/selftest"): read(path) for path in selftest},
    **pages.pages(root, ["docs/windows-facts.md"]),
}, ["windows", "json", "cli", "dtl", "tests"])

# For debuggers.
finish(f"brisk-{version}-symbols.zip", {
    os.path.basename(path): read(path) for path in below("build/release", ".exe.debug")
    if os.path.dirname(path) == "build/release"}, [])

sums = []
for name in sorted(os.listdir(dist)):
    if name != "SHA256SUMS":
        with open(os.path.join(dist, name), "rb") as file:
            sums.append(f"{hashlib.sha256(file.read()).hexdigest()}  {name}\n")
with open(os.path.join(dist, "SHA256SUMS"), "w", encoding="ascii") as file:
    file.writelines(sums)
