#!/usr/bin/env python3
"""service.py: the service that Varnelo asks, in Python's standard library alone. See README.md.

The key of the model comes from the environment variable VARNELO_MODEL_KEY, or from --key-file: on a command line every
user of the machine could read it. Nothing of a request and no address is written to the log."""
import argparse
import http.server
import os
import socketserver
import ssl
import sys
import time

import answers
import endpoint

BODY_LIMIT_BYTES = 8 << 20
SILENCE_SECONDS = 30


class Service:
    """The three addresses. Each takes a body and gives the reply's text and a note for the log."""

    def __init__(self, table, model=None):
        self.table = table
        self.model = model
        self.addresses = {"/php/api_llm.php": self.groups, "/php/version_info.php": self.version,
                          "/php/get_setup_url.php": self.setup}

    def groups(self, body):
        model, prompts = answers.questions(body)
        known = {identifier: self.table.groups[identifier] for identifier in prompts if identifier in self.table.groups}
        open_ones = {identifier: prompt for identifier, prompt in prompts.items() if identifier not in known}
        found, unanswered = self.model.groups(model, open_ones) if self.model else ({}, len(open_ones))
        note = f"{len(prompts)} asked, {len(known)} from the table, {len(found)} from the model, {unanswered} open"
        return answers.groups_reply({**known, **found}), note

    def version(self, _):
        return answers.section_reply(self.table.version), ""

    def setup(self, _):
        return answers.section_reply(self.table.setup), ""


class Handler(http.server.BaseHTTPRequestHandler):
    timeout = SILENCE_SECONDS
    server_version = "varnelo-service"
    sys_version = ""

    def do_POST(self):
        began = time.monotonic()
        address = self.server.service.addresses.get(self.path)
        status, reply, note = self._answer(address) if address else (404, "no such address", "")
        # An unknown path may hold anything.
        self.server.log(f"{self.path if address else 'elsewhere'} {status} {time.monotonic() - began:.2f} s {note}")
        content = reply.encode("utf-8")
        self.send_response(status)
        self.send_header("Content-Type", "application/json; charset=utf-8" if status == 200 else "text/plain")
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content)

    def _answer(self, address):
        try:
            length = int(self.headers.get("Content-Length", ""))
        except ValueError:
            return 411, "needs a length", ""
        if not 0 <= length <= BODY_LIMIT_BYTES:
            return 413, "too long", ""
        try:
            return 200, *address(self.rfile.read(length))
        except answers.Fault as fault:
            return 400, str(fault), ""

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    """With a TLS context it speaks HTTPS. `log` takes one line a request."""

    daemon_threads = True

    def __init__(self, address, service, context=None, log=lambda line: None):
        super().__init__(address, Handler)
        self.service = service
        self.log = log
        if context:
            # The greeting happens at the first read, on the connection's own thread and with its time-out.
            self.socket = context.wrap_socket(self.socket, server_side=True, do_handshake_on_connect=False)

    def server_bind(self):
        socketserver.TCPServer.server_bind(self)  # and asks nobody for the name of its address
        self.server_name, self.server_port = self.server_address[:2]

    def handle_error(self, request, client_address):
        self.log(f"a connection ended early: {sys.exc_info()[0].__name__}")


def tls_context(certificate, key):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.minimum_version = ssl.TLSVersion.TLSv1_2
    context.load_cert_chain(certificate, key)
    return context


def options(arguments):
    parser = argparse.ArgumentParser(description="The service that Varnelo asks.", allow_abbrev=False)
    parser.add_argument("--table", required=True, help="JSON file with fixed answers, read once at the start")
    parser.add_argument("--listen", default="127.0.0.1", help="address to listen on (default: this machine alone)")
    parser.add_argument("--port", type=int, default=8443)
    parser.add_argument("--certificate", help="certificate chain, PEM; without it plain HTTP, for a TLS proxy in front")
    parser.add_argument("--private-key", help="its key, PEM")
    parser.add_argument("--endpoint", default=os.environ.get("VARNELO_MODEL_URL", ""),
                        help="address of a chat-completions model (or VARNELO_MODEL_URL); without it the table is all")
    parser.add_argument("--model", default=os.environ.get("VARNELO_MODEL", ""),
                        help="name of the model (or VARNELO_MODEL); without it the one that the program names")
    parser.add_argument("--key-file", help="file with the model's key, instead of VARNELO_MODEL_KEY")
    return parser.parse_args(arguments)


def key_of(key_file):
    if not key_file:
        return os.environ.get("VARNELO_MODEL_KEY", "")
    with open(key_file, encoding="ascii") as file:
        return file.read().strip()


def main(arguments=None):
    chosen = options(arguments)
    try:
        model = endpoint.Endpoint(chosen.endpoint, chosen.model, key_of(chosen.key_file)) if chosen.endpoint else None
        service = Service(answers.Table.from_file(chosen.table), model)
    except (answers.Fault, OSError) as fault:
        sys.exit(f"service: {fault}")
    context = tls_context(chosen.certificate, chosen.private_key) if chosen.certificate else None
    server = Server((chosen.listen, chosen.port), service, context, lambda line: print(line, flush=True))
    scheme = "https" if context else "http"
    print(f"service: listening on {scheme}://{chosen.listen}:{server.server_address[1]}", flush=True)
    try:
        server.serve_forever()
    except KeyboardInterrupt:
        pass


if __name__ == "__main__":
    main()
