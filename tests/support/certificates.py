"""Certificates for one run of the tests, made by openssl in a folder of that run."""
import pathlib
import subprocess

AUTHORITY = "authority"
# Certificates that the authority signs: name, host name in it, not before, not after (YYMMDDHHMMSSZ; none: now valid).
SIGNED = [
    ("good", "localhost", None),
    ("wrong_name", "elsewhere.example", None),
    ("expired", "localhost", ("200101000000Z", "210101000000Z")),
]
SELF_SIGNED = "self_signed"

CONFIG = """
[ca]
default_ca = tests
[tests]
database = {folder}/index.txt
rand_serial = yes
new_certs_dir = {folder}
default_md = sha256
default_days = 2
policy = anything
unique_subject = no
[anything]
commonName = supplied
[authority]
basicConstraints = critical,CA:TRUE
keyUsage = critical,keyCertSign,cRLSign
subjectKeyIdentifier = hash
[req]
distinguished_name = subject
[subject]
"""


def openssl(*arguments):
    done = subprocess.run(["openssl", *map(str, arguments)], stdin=subprocess.DEVNULL, capture_output=True, text=True)
    if done.returncode != 0:
        raise RuntimeError(f"openssl {arguments[0]}: {done.stderr}")


def names(host):
    return f"subjectAltName=DNS:{host}"


class Certificates:
    """authority.pem and authority.der, and NAME.pem with NAME.key for each name of SIGNED and for SELF_SIGNED."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.config = self.folder / "openssl.cnf"
        self.config.write_text(CONFIG.format(folder=self.folder), encoding="ascii")
        (self.folder / "index.txt").touch()
        self._own(AUTHORITY, "Varnelo test authority", ["-config", self.config, "-extensions", "authority"])
        openssl("x509", "-in", self.certificate(AUTHORITY), "-outform", "der", "-out", self.folder / "authority.der")
        self._own(SELF_SIGNED, "localhost", ["-config", self.config, "-addext", names("localhost")])
        for name, host, times in SIGNED:
            self._signed(name, host, times)

    def certificate(self, name):
        return self.folder / f"{name}.pem"

    def key(self, name):
        return self.folder / f"{name}.key"

    def _own(self, name, subject, more):
        openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", f"/CN={subject}",
                "-keyout", self.key(name), "-out", self.certificate(name), *more)

    def _signed(self, name, host, times):
        request = self.folder / f"{name}.csr"
        extensions = self.folder / f"{name}.ext"
        extensions.write_text(names(host) + "\nextendedKeyUsage=serverAuth\nbasicConstraints=CA:FALSE\n",
                              encoding="ascii")
        openssl("req", "-new", "-newkey", "rsa:2048", "-nodes", "-config", self.config, "-subj", f"/CN={host}",
                "-keyout", self.key(name), "-out", request)
        dates = ["-startdate", times[0], "-enddate", times[1]] if times else []
        openssl("ca", "-batch", "-notext", "-config", self.config, "-cert", self.certificate(AUTHORITY),
                "-keyfile", self.key(AUTHORITY), "-extfile", extensions, "-in", request,
                "-out", self.certificate(name), *dates)
