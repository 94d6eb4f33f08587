"""The files by which the Windows package manager finds and installs a release."""

from __future__ import annotations

import json

IDENTIFIER = "Marlok.MarlokBackup"
SCHEMA = "1.10.0"
# The name of the set-up's entry in the list of installed programs; packaging/setup.nsi has the same.
PRODUCT_CODE = "Marlok Backup"
# What the set-up's exit codes are called there.
RETURN_CODES = {1: "cancelledByUser", 3: "packageInUseByApplication", 4: "systemNotSupported"}


def quoted(text: str) -> str:
    """A YAML string that can be taken for nothing else, a number or a date."""
    return json.dumps(text, ensure_ascii=False)


def manifests(version: str, url: str, sha256: str, date: str) -> dict[str, str]:
    """The three files of a release by name. `date` is "2026-11-21"."""
    head = [f"PackageIdentifier: {IDENTIFIER}", f"PackageVersion: {quoted(version)}"]

    def file(kind: str, lines: list[str]) -> str:
        return "\n".join([*head, *lines, f"ManifestType: {kind}", f"ManifestVersion: {SCHEMA}", ""])

    codes = [line for code, answer in RETURN_CODES.items()
             for line in (f"- InstallerReturnCode: {code}", f"  ReturnResponse: {answer}")]  # fmt: skip
    installer = [
        "Platform:", "- Windows.Desktop",
        'MinimumOSVersion: "10.0.0.0"',
        "InstallerType: nullsoft",
        "Scope: user",
        "InstallModes:", "- interactive", "- silent",
        "ExpectedReturnCodes:", *codes,
        "UpgradeBehavior: install",
        f"ProductCode: {PRODUCT_CODE}",
        f"ReleaseDate: {date}",
        "AppsAndFeaturesEntries:",
        "- DisplayName: Marlok Backup Utility", "  Publisher: Marlok",
        f"  DisplayVersion: {quoted(version)}", f"  ProductCode: {PRODUCT_CODE}",
        "Installers:", "- Architecture: x64",
        f"  InstallerUrl: {url}", f"  InstallerSha256: {sha256.upper()}",
    ]  # fmt: skip
    locale = [
        "PackageLocale: en-US",
        "Publisher: Marlok",
        "PackageName: Marlok Backup Utility",
        "License: MIT",
        "ShortDescription: Keeps copies of your folders and files in backup locations that you choose.",
        "Moniker: marlok-backup",
        "Tags:", "- backup", "- copy", "- restore",
    ]  # fmt: skip
    return {
        f"{IDENTIFIER}.yaml": file("version", ["DefaultLocale: en-US"]),
        f"{IDENTIFIER}.installer.yaml": file("installer", installer),
        f"{IDENTIFIER}.locale.en-US.yaml": file("defaultLocale", locale),
    }
