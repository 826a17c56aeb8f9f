"""Archives whose bytes depend on their contents alone: sorted, one owner, the time of the commit."""

import gzip
import io
import os
import tarfile
import time
import zipfile

PROGRAMS = (".exe", ".dll", ".cmd", "/brisktitles", "/brisklog")


def write_zip(path, files, moment):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name in sorted(files):
            entry = zipfile.ZipInfo(name, time.gmtime(max(moment, 315532800))[:6])
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = (0o100755 if name.endswith(PROGRAMS) else 0o100644) << 16
            archive.writestr(entry, files[name])


def write_tar(path, files, moment):
    unpacked = io.BytesIO()
    with tarfile.open(fileobj=unpacked, mode="w", format=tarfile.USTAR_FORMAT) as archive:
        for name in sorted(files):
            entry = tarfile.TarInfo(name)
            entry.size, entry.mtime = len(files[name]), moment
            entry.mode = 0o755 if name.endswith(PROGRAMS) else 0o644
            archive.addfile(entry, io.BytesIO(files[name]))
    with open(path, "wb") as file, gzip.GzipFile("", "wb", 9, file, mtime=moment) as archive:
        archive.write(unpacked.getvalue())


def write(path, files, moment):
    """All below a folder of the archive's own name."""
    folder = os.path.basename(path)
    for ending in (".zip", ".tar.gz"):
        if folder.endswith(ending):
            folder = folder[:-len(ending)]
    inside = {f"{folder}/{name}": data for name, data in files.items()}
    (write_zip if path.endswith(".zip") else write_tar)(path, inside, moment)
