"""Makes the packages of a release; scripts/package is the way in, and says how it is called.

The same checkout gives the same bytes, wherever it lies and whenever that is: files are packed in the order of their
names with the time of the last commit, and nothing of this machine goes into a package.
"""

from __future__ import annotations

import argparse
import hashlib
import json
import math
import os
import re
import shutil
import struct
import subprocess
import sys
import time
import uuid
import zipfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import components
import winget
from components import Component, UnknownComponent

REPO = Path(__file__).resolve().parents[2]
DIST = REPO / "dist" / "Marlok Backup"
PACKAGES = REPO / "dist" / "packages"
WORK = REPO / "build" / "package"
WINDOWS = REPO / "build" / "windows"
MAPS = [WINDOWS / "marlok_backup.map", WINDOWS / "marlok_restart.map"]
SYMBOLS = ["Marlok Backup.exe.debug", "Restart.exe.debug"]
LICENCES = "THIRD-PARTY-LICENSES"
PROGRAM = "Marlok Backup.exe"
# Nothing lies there: who packages without saying where gets files that cannot be mistaken for published ones.
NO_ADDRESS = "https://example.invalid/"
# The oldest time that an archive can hold.
FIRST_ZIP_YEAR = 1980


class PackageError(Exception):
    """The packages cannot be made; the message says why."""


def output_of(*command: str) -> str:
    done = subprocess.run(command, cwd=REPO, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise PackageError(f"{' '.join(command)}: {done.stderr.strip()}")
    return done.stdout.strip()


def version_of(repo: Path) -> str:
    """The program's version. Raises PackageError when its parts do not agree about it."""
    found = re.search(r"^project\(\S+ VERSION (\d+\.\d+\.\d+) ", (repo / "CMakeLists.txt").read_text(), re.MULTILINE)
    if found is None:
        raise PackageError("CMakeLists.txt has no version")
    version = found[1]
    numbers = version.replace(".", ",") + ",0"
    for file, wanted in (
        ("resources/version.rcinc", [f"FILEVERSION {numbers}", f"PRODUCTVERSION {numbers}", f'"{version}.0"']),
        ("resources/program.manifest", [f'name="Marlok.Backup" version="{version}.0"']),
        ("ui/frmAbout.h", [f'"Version {version}"']),
        ("docs/guide.md", [f"Marlok-Backup-{version}-setup.exe"]),
        ("CHANGELOG.md", [f"## {version} "]),
    ):
        text = (repo / file).read_text(encoding="utf-8")
        for words in wanted:
            if words not in text:
                raise PackageError(f"{file} is not of version {version}: there is no {words} in it")
    return version


def moment_of_sources() -> int:
    """When the sources were last changed, in seconds since 1970."""
    given = os.environ.get("SOURCE_DATE_EPOCH")
    return int(given) if given else int(output_of("git", "log", "-1", "--format=%ct"))


def check_checkout() -> None:
    changed = output_of("git", "status", "--porcelain")
    if changed:
        raise PackageError(f"there are changes that are not committed:\n{changed}\nCommit them, or say --allow-changes.")


# ---- what is installed ----


def lay_out(folder: Path, parts: list[Component], moment: int) -> list[str]:
    """Fills the folder with what ships; the names of the files, the program last."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for file in sorted(DIST.iterdir()):
        if not file.is_file():
            raise PackageError(f"{file} is no file: only files are installed")
        shutil.copyfile(file, folder / file.name)
    # The whole of it: a package holds the set-up's own part as well.
    (folder / LICENCES).write_text(components.licence_text(parts), encoding="utf-8", newline="")
    for file in folder.iterdir():
        os.utime(file, (moment, moment))
    names = sorted(file.name for file in folder.iterdir())
    if PROGRAM not in names:
        raise PackageError(f"{DIST} does not hold {PROGRAM}")
    return [name for name in names if name != PROGRAM] + [PROGRAM]


def write_archive(archive: Path, files: list[tuple[str, Path]], moment: int) -> None:
    """A ZIP archive whose bytes depend on the names, the contents and the moment alone."""
    when = time.gmtime(moment)[:6]
    if when[0] < FIRST_ZIP_YEAR:
        raise PackageError("an archive cannot hold files from before 1980")
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as packed:
        for name, file in sorted(files):
            entry = zipfile.ZipInfo(name, when)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 0  # as made on Windows: no rights of this machine
            entry.external_attr = 0x20  # an ordinary file
            packed.writestr(entry, file.read_bytes())


# ---- the set-up program ----


def side_picture(width: int = 164, height: int = 314) -> bytes:
    """The picture beside the set-up's last page: the program's blue, lighter towards the top, with rings in it. A BMP."""
    rows = bytearray()
    for y in range(height):  # a bitmap's rows go from the bottom up
        row = bytearray()
        for x in range(width):
            share = y / height
            ring = math.hypot(x - width / 2, y - height * 0.62)
            light = 0.10 if abs(ring - 46) < 8 else 0.05 if abs(ring - 66) < 4 else 0.0
            red, green, blue = (low + (high - low) * share for low, high in ((20, 74), (62, 138), (112, 200)))
            row += bytes(int(value + (255 - value) * light) for value in (blue, green, red))
        rows += row + bytes(-len(row) % 4)
    offset = 54
    header = struct.pack("<2sIHHI", b"BM", offset + len(rows), 0, 0, offset)
    return header + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(rows), 2835, 2835, 0, 0) + bytes(rows)


def write_setup(setup: Path, source: Path, names: list[str], version: str, moment: int) -> None:
    """The set-up program. Raises PackageError with what the tool said."""
    include = WORK / "files.nsh"
    lines = ["!macro ForEachFile action", *(f'    !insertmacro ${{action}} "{name}"' for name in names), "!macroend", ""]
    include.write_text("\n".join(lines), encoding="utf-8")
    (WORK / "side.bmp").write_bytes(side_picture())
    os.utime(WORK / "side.bmp", (moment, moment))  # packed with its time, as the files are
    size = sum((source / name).stat().st_size for name in names)
    values = {
        "VERSION": version,
        "SOURCE": source,
        "OUTPUT": setup,
        "SIZE": math.ceil(size / 1024),
        "ICON": REPO / "resources" / "program.ico",
        "SIDE": WORK / "side.bmp",
        "FILES": include,
    }
    # Without -NOCONFIG a file of this machine would have its say.
    command = ["makensis", "-NOCONFIG", "-WX", "-V2", "-INPUTCHARSET", "UTF8"]
    command += [f"-D{name}={value}" for name, value in values.items()]
    done = subprocess.run(
        [*command, str(REPO / "packaging" / "setup.nsi")], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)  # fmt: skip
    if done.returncode != 0:
        raise PackageError(done.stdout.decode("utf-8", "replace"))


# ---- the list of components ----


def hash_of(file: Path) -> str:
    return hashlib.sha256(file.read_bytes()).hexdigest()


def component_entry(part: Component) -> dict[str, object]:
    version = part.version()
    return {
        "type": "library" if part is not components.INSTALLER else "application",
        "bom-ref": part.name,
        "name": part.name,
        "version": version,
        "description": part.what,
        "licenses": [{"expression": part.licence}],
        "purl": f"pkg:deb/debian/{part.package}@{version.replace('+', '%2B').replace(':', '%3A')}?distro=debian-12",
    }


def component_list(parts: list[Component], source: Path, names: list[str], version: str, moment: int) -> str:
    """What the packages hold, as CycloneDX 1.5 spells it."""
    files = [
        {"type": "file", "name": name, "bom-ref": name, "hashes": [{"alg": "SHA-256", "content": hash_of(source / name)}]}
        for name in sorted(names)
    ]
    libraries = [part for part in parts if part is not components.INSTALLER]
    bill = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "version": 1,
        "metadata": {
            "timestamp": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(moment)),
            "component": {
                "type": "application",
                "bom-ref": "marlok-backup",
                "name": "Marlok Backup Utility",
                "version": version,
                "licenses": [{"license": {"id": "MIT"}}],
            },
        },
        "components": [component_entry(part) for part in parts] + files,
        "dependencies": [{"ref": "marlok-backup", "dependsOn": [part.name for part in libraries]}],
    }
    # A number of its own for each content, and the same for the same.
    content = json.dumps(bill, sort_keys=True)
    bill["serialNumber"] = f"urn:uuid:{uuid.uuid5(uuid.NAMESPACE_OID, content)}"
    return json.dumps(bill, indent=2, sort_keys=True) + "\n"


# ---- what goes round the packages ----


def packages_of(version: str) -> tuple[Path, Path]:
    """The set-up program and the portable archive."""
    return PACKAGES / f"Marlok-Backup-{version}-setup.exe", PACKAGES / f"Marlok-Backup-{version}-portable.zip"


def write_manifests(version: str, address: str, moment: int) -> None:
    setup, _ = packages_of(version)
    folder = PACKAGES / "winget"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    date = time.strftime("%Y-%m-%d", time.gmtime(moment))
    url = address.rstrip("/") + "/" + setup.name
    for name, text in winget.manifests(version, url, hash_of(setup), date).items():
        (folder / name).write_text(text, encoding="utf-8", newline="\n")


def write_checksums() -> None:
    sums = PACKAGES / "SHA256SUMS"
    sums.unlink(missing_ok=True)
    files = sorted(path for path in PACKAGES.rglob("*") if path.is_file())
    sums.write_text("".join(f"{hash_of(file)}  {file.relative_to(PACKAGES).as_posix()}\n" for file in files))


def make(version: str, address: str, moment: int) -> None:
    """Everything, from what DIST holds."""
    parts = [*components.components_of(components.read_maps(MAPS)), components.INSTALLER]
    shutil.rmtree(PACKAGES, ignore_errors=True)
    PACKAGES.mkdir(parents=True)
    source = WORK / "Marlok Backup"
    names = lay_out(source, parts, moment)
    setup, portable = packages_of(version)
    write_archive(portable, [(f"Marlok Backup/{name}", source / name) for name in names], moment)
    write_setup(setup, source, names, version, moment)
    symbols = PACKAGES / f"Marlok-Backup-{version}-symbols.zip"
    write_archive(symbols, [(name, WINDOWS / name) for name in SYMBOLS], moment)
    bill = PACKAGES / f"Marlok-Backup-{version}.cdx.json"
    bill.write_text(component_list(parts, source, names, version, moment), encoding="utf-8", newline="\n")
    write_manifests(version, address, moment)
    write_checksums()


def renew(version: str, address: str, moment: int) -> None:
    """What depends on the bytes of the set-up program, which was signed since."""
    setup, _ = packages_of(version)
    if not setup.exists():
        raise PackageError(f"{setup} is not there")
    write_manifests(version, address, moment)
    write_checksums()


def tell() -> None:
    for file in sorted(path for path in PACKAGES.rglob("*") if path.is_file()):
        print(f"{file.stat().st_size:>10,}  {file.relative_to(REPO)}")


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/package", description="Makes the packages of a release.")
    way = parser.add_mutually_exclusive_group()
    way.add_argument("--built", action="store_true", help="package what dist holds")
    way.add_argument("--signed", action="store_true", help="the set-up was signed: make what depends on it again")
    parser.add_argument("--url", default=NO_ADDRESS, metavar="ADDRESS", help="where the packages will lie")
    parser.add_argument("--allow-changes", action="store_true", help="take what is not committed along")
    arguments = parser.parse_args()
    try:
        version = version_of(REPO)
        moment = moment_of_sources()
        if arguments.signed:
            renew(version, arguments.url, moment)
        else:
            if not arguments.allow_changes:
                check_checkout()
            if not arguments.built:
                subprocess.run(["scripts/build"], cwd=REPO, env=dict(os.environ, SOURCE_DATE_EPOCH=str(moment)), check=True)
            make(version, arguments.url, moment)
    except (PackageError, UnknownComponent, OSError, subprocess.CalledProcessError) as fault:
        print(f"scripts/package: {fault}", file=sys.stderr)
        return 1
    tell()
    return 0


if __name__ == "__main__":
    sys.exit(main())
