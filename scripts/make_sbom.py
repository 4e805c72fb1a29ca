#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""make_sbom.py PREFIX: prints what is installed below the prefix as a bill of materials, in JSON by
SPDX 2.3: the package, every file with its checksums, and what it needs at run time.

The time in it is SOURCE_DATE_EPOCH, or else now; all else depends on the files alone."""

import datetime
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

AUTHORS = "The qek_std authors"


def checksum(name, data):
    return hashlib.new(name, data).hexdigest()


def file_entry(number, prefix, path):
    # A link counts as what it leads to.
    data = path.read_bytes()
    kind = "SOURCE" if path.suffix in (".h", ".py", ".cmake") else "TEXT"
    if re.search(r"\.(a|so[.0-9]*|dll)$", path.name):
        kind = "BINARY"
    return {
        "SPDXID": f"SPDXRef-File-{number}",
        "fileName": f"./{path.relative_to(prefix).as_posix()}",
        "fileTypes": [kind],
        "checksums": [
            {"algorithm": "SHA1", "checksumValue": checksum("sha1", data)},
            {"algorithm": "SHA256", "checksumValue": checksum("sha256", data)},
        ],
        "licenseConcluded": "MIT",
        "licenseInfoInFiles": ["MIT"],
        "copyrightText": f"2026 {AUTHORS}",
    }


def package(identifier, name, **fields):
    return {
        "SPDXID": identifier,
        "name": name,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": "NOASSERTION",
        "copyrightText": "NOASSERTION",
    } | fields


def needed(prefix):
    """The shared libraries that the installed ones name."""
    names = set()
    for library in prefix.rglob("*.so.*[0-9]"):
        heads = subprocess.run(["objdump", "-p", library], check=True, text=True,
                               capture_output=True).stdout
        names.update(re.findall(r"NEEDED +(\S+)", heads))
    return sorted(names)


def document(prefix):
    header = (prefix / "include" / "qek_std.h").read_text(encoding="utf-8")
    version = re.search(r'#define QEK_STD_VERSION "(.*)"', header).group(1)
    paths = sorted(path for path in prefix.rglob("*") if path.is_file())
    files = [file_entry(number, prefix, path) for number, path in enumerate(paths)]
    # The code over all files is what the format asks for: the checksums, sorted and joined.
    sums = sorted(entry["checksums"][0]["checksumValue"] for entry in files)
    code = checksum("sha1", "".join(sums).encode())
    time = datetime.datetime.fromtimestamp(
        int(os.environ.get("SOURCE_DATE_EPOCH") or datetime.datetime.now().timestamp()),
        datetime.timezone.utc)
    main = "SPDXRef-Package-qek-std"
    packages = [package(
        main, "qek_std", versionInfo=version, supplier=f"Organization: {AUTHORS}",
        filesAnalyzed=True, packageVerificationCode={"packageVerificationCodeValue": code},
        licenseConcluded="MIT", licenseDeclared="MIT", licenseInfoFromFiles=["MIT"],
        copyrightText=f"2026 {AUTHORS}", primaryPackagePurpose="LIBRARY")]
    relations = [("SPDXRef-DOCUMENT", "DESCRIBES", main)]
    relations += [(main, "CONTAINS", entry["SPDXID"]) for entry in files]
    for number, name in enumerate(needed(prefix)):
        packages.append(package(f"SPDXRef-Needed-{number}", name))
        relations.append((f"SPDXRef-Needed-{number}", "RUNTIME_DEPENDENCY_OF", main))
    return {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"qek_std-{version}",
        "documentNamespace": f"https://qek-std.example/spdx/{version}-{code}",
        "creationInfo": {
            "created": time.strftime("%Y-%m-%dT%H:%M:%SZ"),
            "creators": [f"Organization: {AUTHORS}", "Tool: make_sbom.py"],
        },
        "packages": packages,
        "files": files,
        "relationships": [
            {"spdxElementId": source, "relationshipType": kind, "relatedSpdxElement": target}
            for source, kind, target in relations
        ],
    }


if __name__ == "__main__":
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        sys.exit(__doc__.partition(":")[0].join(["usage: ", ""]))
    print(json.dumps(document(pathlib.Path(sys.argv[1])), indent=2))
