"""What scripts/package makes, looked at as it lies there."""

from __future__ import annotations

import hashlib
import json
import re
import subprocess
import zipfile
from pathlib import Path

import components
import package
import pytest
import winget
import yaml
from harness import REPO

# Fields of the package manager's files, whether each has to be there, and how it looks.
Fields = dict[str, "tuple[bool, str | Fields]"]
HEAD: Fields = {
    "PackageIdentifier": (True, r"[^.\s\\/:*?\"<>|]{1,32}(\.[^.\s\\/:*?\"<>|]{1,32}){1,7}"),
    "PackageVersion": (True, r"\d+(\.\d+){0,3}"),
    "ManifestVersion": (True, r"1\.\d+\.0"),
}
VERSION: Fields = {**HEAD, "DefaultLocale": (True, r"en-US"), "ManifestType": (True, "version")}
INSTALLER: Fields = {
    **HEAD,
    "ManifestType": (True, "installer"),
    "Platform": (True, r"Windows\.Desktop"),
    "MinimumOSVersion": (True, r"\d+(\.\d+){0,3}"),
    "InstallerType": (True, "nullsoft"),
    "Scope": (True, "user"),
    "InstallModes": (True, "interactive|silent|silentWithProgress"),
    "ExpectedReturnCodes": (
        True,
        {
            "InstallerReturnCode": (True, r"[1-9]\d*"),
            "ReturnResponse": (True, "cancelledByUser|packageInUseByApplication|systemNotSupported"),
        },
    ),
    "UpgradeBehavior": (True, "install|uninstallPrevious|deny"),
    "ProductCode": (True, ".{1,255}"),
    "ReleaseDate": (True, r"20\d\d-\d\d-\d\d"),
    "AppsAndFeaturesEntries": (
        True,
        {
            "DisplayName": (True, ".{1,256}"),
            "Publisher": (True, ".{1,256}"),
            "DisplayVersion": (True, ".{1,128}"),
            "ProductCode": (True, ".{1,255}"),
        },
    ),
    "Installers": (
        True,
        {
            "Architecture": (True, "x64"),
            "InstallerUrl": (True, r"https?://\S+"),
            "InstallerSha256": (True, r"[A-F0-9]{64}"),
        },
    ),
}
LOCALE: Fields = {
    **HEAD,
    "ManifestType": (True, "defaultLocale"),
    "PackageLocale": (True, "en-US"),
    "Publisher": (True, ".{2,256}"),
    "PackageName": (True, ".{2,256}"),
    "License": (True, ".{3,512}"),
    "ShortDescription": (True, ".{3,256}"),
    "Moniker": (False, r"\S{1,40}"),
    "Tags": (False, r"\S{1,40}"),
}
KINDS = {"": VERSION, ".installer": INSTALLER, ".locale.en-US": LOCALE}


class Loader(yaml.SafeLoader):
    """A reader that leaves dates what they are, texts."""


Loader.yaml_implicit_resolvers = {
    first: [(tag, pattern) for tag, pattern in resolvers if tag != "tag:yaml.org,2002:timestamp"]
    for first, resolvers in yaml.SafeLoader.yaml_implicit_resolvers.items()
}


def faults_of(value: object, fields: Fields, where: str = "") -> list[str]:
    """What is wrong with a manifest: fields that are missing, unknown, or look wrong."""
    if not isinstance(value, dict):
        return [f"{where or 'the file'} is no mapping"]
    faults = [f"{where}{name} is unknown" for name in value if name not in fields]
    for name, (needed, form) in fields.items():
        if name not in value:
            faults += [f"{where}{name} is missing"] if needed else []
            continue
        entries = value[name] if isinstance(value[name], list) else [value[name]]
        for entry in entries:
            if isinstance(form, dict):
                faults += faults_of(entry, form, f"{where}{name}: ")
            elif not isinstance(entry, (str, int)) or isinstance(entry, bool) or not re.fullmatch(form, str(entry)):
                faults.append(f"{where}{name} is {entry!r}")
    return faults


def read(text: str) -> dict[str, object]:
    return yaml.load(text, Loader)


def made() -> dict[str, str]:
    return winget.manifests("4.0.0", "https://example.org/a-setup.exe", "ab" * 32, "2026-11-21")


def test_the_manifests_have_the_fields_that_the_package_manager_knows(packages: Path, version: str) -> None:
    found = {path.name: read(path.read_text(encoding="utf-8")) for path in (packages / "winget").iterdir()}
    assert set(found) == {f"{winget.IDENTIFIER}{kind}.yaml" for kind in KINDS}
    for kind, fields in KINDS.items():
        manifest = found[f"{winget.IDENTIFIER}{kind}.yaml"]
        assert faults_of(manifest, fields) == []
        assert manifest["PackageVersion"] == version, "text, not a number"
    installer = found[f"{winget.IDENTIFIER}.installer.yaml"]
    setup = packages / f"Marlok-Backup-{version}-setup.exe"
    assert installer["Installers"][0]["InstallerSha256"] == hashlib.sha256(setup.read_bytes()).hexdigest().upper()
    assert installer["Installers"][0]["InstallerUrl"].endswith("/" + setup.name)


@pytest.mark.parametrize(
    ("kind", "old", "new", "fault"),
    [
        (".installer", "Scope: user", "Scop: user", "Scop is unknown"),
        (".installer", "Scope: user", "Scope: everybody", "Scope is 'everybody'"),
        (".installer", "  InstallerSha256: " + "AB" * 32, "  InstallerSha256: AB", "Installers: InstallerSha256 is 'AB'"),
        (".installer", "- Architecture: x64", "- Architecture: x64\n  Locale: en", "Installers: Locale is unknown"),
        (".installer", "ReleaseDate: 2026-11-21", "ReleaseDate: today", "ReleaseDate is 'today'"),
        ("", 'PackageVersion: "4.0.0"', "PackageVersion: 4.0", "PackageVersion is 4.0"),
        ("", "DefaultLocale: en-US\n", "", "DefaultLocale is missing"),
        (".locale.en-US", "Publisher: Marlok", "Publisher: [M]", "Publisher is 'M'"),
    ],
)
def test_a_manifest_with_a_fault_is_refused(kind: str, old: str, new: str, fault: str) -> None:
    text = made()[f"{winget.IDENTIFIER}{kind}.yaml"]
    assert faults_of(read(text), KINDS[kind]) == []
    assert old in text
    assert fault in faults_of(read(text.replace(old, new)), KINDS[kind])


def test_the_manifests_know_the_set_up_by_its_entry_and_its_codes() -> None:
    script = (REPO / "packaging" / "setup.nsi").read_text(encoding="utf-8")
    assert f'!define SHORT "{winget.PRODUCT_CODE}"' in script
    codes = {int(number) for number in re.findall(r"^!define EXIT_\w+ (\d+)", script, re.MULTILINE)}
    assert set(winget.RETURN_CODES) < codes


def test_the_checksums_are_those_of_all_packages(packages: Path) -> None:
    lines = [line.split("  ") for line in (packages / "SHA256SUMS").read_text().splitlines()]
    files = {path.relative_to(packages).as_posix(): path for path in packages.rglob("*") if path.is_file()}
    del files["SHA256SUMS"]
    assert {name: digest for digest, name in lines} == {
        name: hashlib.sha256(path.read_bytes()).hexdigest() for name, path in files.items()
    }


def test_the_archive_holds_what_ships_without_traces_of_the_machine(packages: Path, shipped: Path, version: str) -> None:
    with zipfile.ZipFile(packages / f"Marlok-Backup-{version}-portable.zip") as archive:
        entries = archive.infolist()
    assert [entry.filename for entry in entries] == sorted(f"Marlok Backup/{path.name}" for path in shipped.iterdir())
    assert {(entry.create_system, entry.external_attr, entry.extra) for entry in entries} == {(0, 0x20, b"")}
    assert len({entry.date_time for entry in entries}) == 1
    assert {path.name for path in shipped.iterdir()} >= {"Marlok Backup.exe", "Restart.sec", "LICENSE", "Help.html"}


def test_symbols_lie_beside_what_ships_not_in_it(packages: Path, shipped: Path, version: str) -> None:
    for name in ("Marlok Backup.exe", "Restart.sec"):
        headers = subprocess.run(
            ["x86_64-w64-mingw32-objdump", "-h", "-t", str(shipped / name)], capture_output=True, text=True, check=True).stdout  # fmt: skip
        assert ".gnu_debuglink" in headers
        assert ".debug_info" not in headers
        assert "no symbols" in headers
    with zipfile.ZipFile(packages / f"Marlok-Backup-{version}-symbols.zip") as archive:
        assert sorted(archive.namelist()) == ["Marlok Backup.exe.debug", "Restart.exe.debug"]


def test_the_list_of_components_names_what_is_linked_in(packages: Path, shipped: Path, version: str) -> None:
    bill = json.loads((packages / f"Marlok-Backup-{version}.cdx.json").read_text(encoding="utf-8"))
    assert (bill["bomFormat"], bill["specVersion"], bill["version"]) == ("CycloneDX", "1.5", 1)
    assert re.fullmatch(r"urn:uuid:[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}", bill["serialNumber"])
    assert bill["metadata"]["component"]["version"] == version
    names = {part["name"] for part in bill["components"] if part["type"] != "file"}
    assert names >= {"libstdc++", "libgcc", "mingw-w64-runtime", "winpthreads", "nsis"}
    assert all(part["version"] and part["licenses"] for part in bill["components"] if part["type"] != "file")
    files = {part["name"]: part["hashes"][0]["content"] for part in bill["components"] if part["type"] == "file"}
    assert files == {path.name: hashlib.sha256(path.read_bytes()).hexdigest() for path in shipped.iterdir()}
    references = [part["bom-ref"] for part in bill["components"]] + ["marlok-backup"]
    assert len(references) == len(set(references))
    assert {ref for entry in bill["dependencies"] for ref in (entry["ref"], *entry["dependsOn"])} <= set(references)


def test_licences_ship_in_full(shipped: Path) -> None:
    text = (shipped / package.LICENCES).read_text(encoding="utf-8")
    for words in ("GNU GENERAL PUBLIC LICENSE", "GCC RUNTIME LIBRARY EXCEPTION", "ZPL-2.1", "winpthreads", "Nullsoft"):
        assert words in text, words


def test_a_library_that_nobody_has_looked_at_stops_the_build() -> None:
    known = "/usr/x86_64-w64-mingw32/lib/libmingwex.a(x.o)\n                  y.o (z)\n"
    assert [part.name for part in components.components_of([known])] == ["mingw-w64-runtime"]
    with pytest.raises(components.UnknownComponent, match="libunheard.a"):
        components.components_of([known + "/opt/libunheard.a(a.o)\n                  y.o (z)\n"])


def test_versions_that_do_not_agree_are_refused(tmp_path: Path) -> None:
    places = ("resources/version.rcinc", "resources/program.manifest", "ui/frmAbout.h", "docs/guide.md", "CHANGELOG.md")
    for name in ("CMakeLists.txt", *places):
        (tmp_path / name).parent.mkdir(exist_ok=True)
        (tmp_path / name).write_text((REPO / name).read_text(encoding="utf-8"), encoding="utf-8")
    version = package.version_of(tmp_path)
    for name in places:
        text = (tmp_path / name).read_text(encoding="utf-8")
        numbers = version.replace(".", ",")
        (tmp_path / name).write_text(text.replace(version, "9.9.9").replace(numbers, "9,9,9"), encoding="utf-8")
        with pytest.raises(package.PackageError, match=f"{name} is not of version"):
            package.version_of(tmp_path)
        (tmp_path / name).write_text(text, encoding="utf-8")
    later = (tmp_path / "CMakeLists.txt").read_text().replace(f"VERSION {version} ", "VERSION 9.9.9 ")
    (tmp_path / "CMakeLists.txt").write_text(later)
    with pytest.raises(package.PackageError, match="not of version 9.9.9"):
        package.version_of(tmp_path)
