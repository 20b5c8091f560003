#!/usr/bin/env python3
"""https_server.py FOLDER [SECONDS]: the service as the tests need it, right and wrong in every way.

Makes certificates in FOLDER, listens on free ports of 127.0.0.1, and writes FOLDER/ports, one line of "name:port"
separated by commas, when it takes connections. Ends after SECONDS (600 without them), when its parent has ended, or
when it is told to.

The path of a request says what becomes of it, the port says whether there is a TLS connection at all: see REPLIES,
PORTS and GREETINGS. What never ends goes on until the other side goes, or until somebody asks for /release."""
import os
import pathlib
import signal
import socket
import socketserver
import ssl
import struct
import sys
import threading
import time
import warnings

HERE = pathlib.Path(__file__).resolve().parent
REFERENCE = HERE.parent.parent / "tools" / "service"
sys.path[:0] = [str(HERE), str(REFERENCE)]
sys.dont_write_bytecode = True

import answers  # noqa: E402
import certificates  # noqa: E402
import service as reference  # noqa: E402

LARGE_BYTES = 10_000_000
CHUNK_BYTES = 1 << 20
DRIP_SECONDS = 0.1
HEAD_LIMIT_BYTES = 1 << 16


def large(size=LARGE_BYTES):
    """Content without a period that divides a buffer's size."""
    pattern = bytes(range(251))
    return (pattern * (size // len(pattern) + 1))[:size]


def head(status, *lines):
    return "\r\n".join([f"HTTP/1.1 {status}", *lines, "Connection: close", "", ""]).encode("ascii")


def whole(content, status="200 OK"):
    return head(status, f"Content-Length: {len(content)}") + content


def chunk(content):
    return f"{len(content):x}\r\n".encode("ascii") + content + b"\r\n"


class Release:
    """What everybody waits for who keeps a connection without end."""

    def __init__(self):
        self.event = threading.Event()

    def fire(self):
        now, self.event = self.event, threading.Event()
        now.set()


RELEASE = Release()


def keep(connection, drip=b""):
    """Keeps the connection until the other side closes it or /release is asked for; with `drip`, sends that again and
    again, each time well within any time-out."""
    released = RELEASE.event
    connection.settimeout(DRIP_SECONDS)
    while not released.is_set():
        try:
            if drip:
                connection.sendall(drip)
            if not connection.recv(4096):
                return
        except TimeoutError:
            pass


# One function a path: what is done with the connection after a request of the raw bytes `request`.

def echo(connection, request):
    connection.sendall(whole(request))


def text(connection, _):
    connection.sendall(whole(b"hello"))


def empty(connection, _):
    connection.sendall(whole(b""))


def large_reply(connection, _):
    connection.sendall(whole(large()))


def chunked(connection, _):
    connection.sendall(head("200 OK", "Transfer-Encoding: chunked"))
    for part in (b"one,", b"two,", large(70_000), b",end"):
        connection.sendall(chunk(part))
    connection.sendall(b"0\r\n\r\n")


def until_close(connection, _):
    connection.sendall(head("200 OK") + b"until the end")


def zeros(connection, _):
    connection.sendall(whole(b"a\0b\0"))


def server_error(connection, _):
    connection.sendall(whole(b"out of order", "500 Internal Server Error"))


def missing(connection, _):
    connection.sendall(whole(b"not here", "404 Not Found"))


def truncated(connection, _):
    connection.sendall(head("200 OK", "Content-Length: 1000") + b"x" * 400)


def truncated_chunks(connection, _):
    connection.sendall(head("200 OK", "Transfer-Encoding: chunked") + chunk(b"x" * 400) + b"3e8\r\n" + b"x" * 10)


def broken(connection, _):
    """Breaks half-way through a large body, with a reset instead of an end."""
    connection.sendall(head("200 OK", f"Content-Length: {LARGE_BYTES}") + large(LARGE_BYTES // 2))
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def silent(connection, _):
    keep(connection)


def stalled(connection, _):
    connection.sendall(head("200 OK", "Content-Length: 1000") + b"x" * 400)
    keep(connection)


def dripping(connection, _):
    connection.sendall(head("200 OK", "Transfer-Encoding: chunked"))
    keep(connection, chunk(b"."))


def endless(connection, _):
    connection.sendall(head("200 OK", "Transfer-Encoding: chunked"))
    content = chunk(large(CHUNK_BYTES))
    while True:
        connection.sendall(content)


def release(connection, _):
    RELEASE.fire()
    connection.sendall(whole(b"released"))


REPLIES = {
    "/echo": echo, "/text": text, "/empty": empty, "/large": large_reply, "/chunked": chunked,
    "/until-close": until_close, "/zeros": zeros, "/error": server_error, "/missing": missing, "/truncated": truncated,
    "/truncated-chunks": truncated_chunks, "/broken": broken, "/silent": silent, "/stalled": stalled,
    "/dripping": dripping, "/endless": endless, "/release": release,
}


def read_request(connection):
    """The raw bytes of one request with a Content-Length body; None when the other side gives up before its end."""
    data = b""
    while b"\r\n\r\n" not in data:
        part = connection.recv(65536)
        if not part or len(data) > HEAD_LIMIT_BYTES:
            return None
        data += part
    lines, body = data.split(b"\r\n\r\n", 1)
    length = 0
    for line in lines.split(b"\r\n")[1:]:
        name, _, value = line.partition(b":")
        if name.strip().lower() == b"content-length":
            length = int(value)
    while len(body) < length:
        part = connection.recv(65536)
        if not part:
            return None
        body += part
    return lines + b"\r\n\r\n" + body


class Handler(socketserver.BaseRequestHandler):
    def handle(self):
        try:
            self.server.greet(self.request)
        except OSError:
            pass  # the other side has gone, as it may


def tls(context):
    """The greeting of a TLS connection, with a request and a reply in it."""
    def greet(plain):
        with context.wrap_socket(plain, server_side=True) as connection:
            request = read_request(connection)
            if not request:
                return
            reply = REPLIES.get(request.split(b" ")[1].decode("ascii"), missing)
            reply(connection, request)
            if reply is not broken:
                connection.settimeout(0)  # says goodbye and waits for no answer
                connection.unwrap()
    return greet


def mute(plain):
    """Takes the connection and never greets."""
    keep(plain)


def slow(plain):
    """A greeting of 16,000 bytes, one at a time."""
    plain.sendall(b"\x16\x03\x03\x3e\x80")
    keep(plain, b"\0")


class Listener(socketserver.ThreadingTCPServer):
    daemon_threads = True
    request_queue_size = 64

    def __init__(self, greet):
        self.greet = greet
        super().__init__(("127.0.0.1", 0), Handler)

    def handle_error(self, request, client_address):
        pass


def context_for(made, certificate, version=None):
    """A server's side of TLS with one of the certificates; with `version`, that version of the protocol only."""
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(made.certificate(certificate), made.key(certificate))
    if version:
        # Versions as old as these are switched off by the default level.
        context.set_ciphers("DEFAULT:@SECLEVEL=0")
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", DeprecationWarning)
            context.minimum_version = version
            context.maximum_version = version
    return context


# Name of the port, certificate, version of TLS (none: what the library offers).
PORTS = [
    ("good", "good", None),
    ("wrong_name", "wrong_name", None),
    ("expired", "expired", None),
    ("self_signed", certificates.SELF_SIGNED, None),
    ("tls_1_0", "good", ssl.TLSVersion.TLSv1),
    ("tls_1_1", "good", ssl.TLSVersion.TLSv1_1),
    ("tls_1_2", "good", ssl.TLSVersion.TLSv1_2),
]
# Names of more ports: these never come to a TLS connection.
GREETINGS = [mute, slow]


class Service:
    """All the listeners of one run. `ports` names them; "reference" is the server of tools/service
    with its example, "refused" belongs to nobody else and takes no connections."""

    def __init__(self, folder):
        self.made = certificates.Certificates(folder)
        self.listeners = {name: Listener(tls(context_for(self.made, certificate, version)))
                          for name, certificate, version in PORTS}
        self.listeners.update((greet.__name__, Listener(greet)) for greet in GREETINGS)
        table = answers.Table.from_file(REFERENCE / "example_table.json")
        self.listeners["reference"] = reference.Server(("127.0.0.1", 0), reference.Service(table),
                                                       context_for(self.made, "good"))
        self.closed_door = socket.socket()
        self.closed_door.bind(("127.0.0.1", 0))
        self.ports = {name: listener.server_address[1] for name, listener in self.listeners.items()}
        self.ports["refused"] = self.closed_door.getsockname()[1]
        for listener in self.listeners.values():
            threading.Thread(target=listener.serve_forever, kwargs={"poll_interval": 0.1}, daemon=True).start()

    def close(self):
        for listener in self.listeners.values():
            listener.shutdown()
            listener.server_close()
        self.closed_door.close()


def main():
    folder = pathlib.Path(sys.argv[1])
    end = time.monotonic() + float(sys.argv[2] if len(sys.argv) > 2 else 600)
    parent = os.getppid()
    stop = threading.Event()
    signal.signal(signal.SIGTERM, lambda *_: stop.set())
    service = Service(folder)
    ports = folder / "ports.new"
    ports.write_text(",".join(f"{name}:{port}" for name, port in service.ports.items()) + "\n", encoding="ascii")
    ports.rename(folder / "ports")
    while not stop.wait(0.5) and time.monotonic() < end and os.getppid() == parent:
        pass
    service.close()


if __name__ == "__main__":
    main()
