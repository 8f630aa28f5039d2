"""Certificates for code that are made here, so that nobody believes them who was not told to."""

import pathlib
import subprocess

PASSWORD = "ein Geheimnis, 100 %"


def make_certificate(folder: pathlib.Path, name: str) -> pathlib.Path:
    """Certificate and key beside each other: name.pem, name.key, and both in name.p12 with the password."""
    certificate, key, store = (folder / f"{name}.{ending}" for ending in ("pem", "key", "p12"))
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", key, "-out", certificate,
                    "-days", "2", "-subj", f"/CN={name}", "-addext", "extendedKeyUsage=codeSigning"],
                   check=True, capture_output=True)
    subprocess.run(["openssl", "pkcs12", "-export", "-inkey", key, "-in", certificate, "-out", store, "-passout",
                    f"pass:{PASSWORD}"], check=True, capture_output=True)
    return certificate
