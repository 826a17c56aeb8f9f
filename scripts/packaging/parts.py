"""What is linked into the programs, from the packages that it was built with: notices, and a bill of materials."""

import hashlib
import json
import os
import subprocess

# Packages that may bring it, what it is, its licence by the name that SPDX gives it. The notices have the packages' own
# words.
LINKED = {
    "windows": [
        (["g++-mingw-w64-x86-64-posix"], "GCC's runtime: libstdc++, libgcc", "GPL-3.0-or-later WITH GCC-exception-3.1"),
        (["mingw-w64-x86-64-dev"], "MinGW-w64's runtime and winpthreads", "NOASSERTION"),
    ],
    "linux": [(["libstdc++-*-dev"], "GCC's runtime: libstdc++, libgcc", "GPL-3.0-or-later WITH GCC-exception-3.1")],
    "json": [(["nlohmann-json3-dev"], "JSON for Modern C++ (headers)", "MIT")],
    "cli": [(["libcli11-dev"], "CLI11: command lines of the tools (headers)", "BSD-3-Clause")],
    "dtl": [(["libdtl-dev"], "dtl: differences of texts (headers)", "BSD-3-Clause")],
    "tests": [(["googletest"], "GoogleTest, in the test programs", "BSD-3-Clause")],
}


def installed(patterns):
    """Package and version of the first pattern that is installed and has a notice; of several, the newest."""
    for pattern in patterns:
        result = subprocess.run(["dpkg-query", "-W", "-f", "${db:Status-Status} ${Package} ${Version}\n", pattern],
                                capture_output=True, text=True)
        found = [line.split()[1:] for line in result.stdout.splitlines() if line.startswith("installed ")]
        if found:
            return sorted(found, key=lambda entry: [int(part) if part.isdigit() else 0 for part in
                                                    entry[1].replace("-", ".").split(".")])[-1]
    return None


def linked(kinds):
    parts = []
    for kind in kinds:
        for patterns, what, licence in LINKED[kind]:
            found = installed(patterns)
            if not found:
                raise SystemExit(f"package: none of {', '.join(patterns)} is installed")
            parts.append((*found, what, licence))
    return parts


def notices(parts):
    text = ["Brisk contains parts made by others. What their packages say of authors and licences follows.\n"
            "For Brisk itself no licence has been chosen.\n"]
    for package, version, what, _ in parts:
        with open(f"/usr/share/doc/{package}/copyright", encoding="utf-8", errors="replace") as file:
            copyright = file.read()
        text.append(f"{'=' * 100}\n{what}\nfrom the Debian package {package} {version}\n{'=' * 100}\n\n{copyright}")
    return "\n".join(text).encode()


def bill(name, version, commit, created, parts, files):
    """SPDX 2.3. `files`: contents by path, without the bill itself."""

    def identifier(kind, text):
        return f"SPDXRef-{kind}-" + "".join(letter if letter.isalnum() or letter in ".-" else "-" for letter in text)

    product = {
        "SPDXID": "SPDXRef-Package-brisk", "name": name, "versionInfo": version, "downloadLocation": "NOASSERTION",
        "filesAnalyzed": True, "licenseConcluded": "NOASSERTION", "licenseDeclared": "NOASSERTION",
        "licenseInfoFromFiles": ["NOASSERTION"], "copyrightText": "NOASSERTION",
        "packageVerificationCode": {"packageVerificationCodeValue": hashlib.sha1(
            "".join(sorted(hashlib.sha1(data).hexdigest() for data in files.values())).encode()).hexdigest()},
        "sourceInfo": f"built from commit {commit}",
    }
    packages, relations = [product], [("SPDXRef-DOCUMENT", "DESCRIBES", "SPDXRef-Package-brisk")]
    for package, package_version, what, licence in parts:
        spdx = identifier("Package", package)
        packages.append({
            "SPDXID": spdx, "name": package, "versionInfo": package_version, "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False, "licenseConcluded": "NOASSERTION", "licenseDeclared": licence,
            "copyrightText": "NOASSERTION", "summary": what,
            "externalRefs": [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                              "referenceLocator": f"pkg:deb/debian/{package.replace('+', '%2B')}@{package_version.replace('+', '%2B').replace('~', '~')}"}],
        })
        relations.append(("SPDXRef-Package-brisk", "STATIC_LINK", spdx))
    entries = []
    for number, (path, data) in enumerate(sorted(files.items())):
        entries.append({
            "SPDXID": f"SPDXRef-File-{number}", "fileName": "./" + path,
            "checksums": [{"algorithm": "SHA1", "checksumValue": hashlib.sha1(data).hexdigest()},
                          {"algorithm": "SHA256", "checksumValue": hashlib.sha256(data).hexdigest()}],
            "licenseConcluded": "NOASSERTION", "licenseInfoInFiles": ["NOASSERTION"], "copyrightText": "NOASSERTION",
        })
        relations.append(("SPDXRef-Package-brisk", "CONTAINS", entries[-1]["SPDXID"]))
    document = {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": name,
        "documentNamespace": f"https://spdx.org/spdxdocs/{name}-{commit}",
        "creationInfo": {"created": created, "creators": ["Tool: brisk-scripts-package"]},
        "packages": packages, "files": entries,
        "relationships": [{"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
                          for one, kind, other in relations],
    }
    return (json.dumps(document, indent=1) + "\n").encode()
