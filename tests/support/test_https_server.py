"""That the server of the Wine tests does what its cases rest on, seen by openssl: a case that expects a refusal is worth
something only if what is refused is really offered."""
import pathlib
import socket
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

import https_server  # noqa: E402

CLIENT_SECONDS = 30
OLD_CIPHERS = "DEFAULT:@SECLEVEL=0"


class HttpsServerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.service = https_server.Service(cls.folder.name)

    @classmethod
    def tearDownClass(cls):
        cls.service.close()
        cls.folder.cleanup()

    def client(self, port, *arguments, request=b""):
        """openssl's own client: what it printed, and what it got when it sent a request."""
        command = ["openssl", "s_client", "-connect", f"127.0.0.1:{self.service.ports[port]}", "-verify_hostname",
                   "localhost", "-CAfile", str(self.service.made.certificate("authority")), *arguments]
        if request:
            command += ["-quiet", "-ign_eof"]
        done = subprocess.run(command, input=request, capture_output=True, timeout=CLIENT_SECONDS)
        return done.stdout if request else (done.stdout + done.stderr).decode("latin-1")

    def reply(self, path, body=b""):
        request = f"POST {path} HTTP/1.1\r\nHost: localhost\r\nContent-Length: {len(body)}\r\n\r\n".encode() + body
        return self.client("good", request=request)

    def content(self, path, body=b""):
        return self.reply(path, body).split(b"\r\n\r\n", 1)[1]

    def test_the_good_certificate_is_in_order(self):
        self.assertIn("Verify return code: 0 (ok)", self.client("good"))

    def test_the_other_certificates_have_the_fault_of_their_name(self):
        self.assertIn("Verify return code: 62 (hostname mismatch)", self.client("wrong_name"))
        self.assertIn("Verify return code: 10 (certificate has expired)", self.client("expired"))
        self.assertIn("Verify return code: 18 (self-signed certificate)", self.client("self_signed"))

    def test_the_wrong_name_is_the_only_fault_of_its_certificate(self):
        text = self.client("wrong_name", "-verify_hostname", "elsewhere.example")
        self.assertIn("Verify return code: 0 (ok)", text)

    def test_old_versions_are_really_spoken_and_nothing_else(self):
        for port, flag, protocol in (("tls_1_0", "-tls1", "TLSv1"), ("tls_1_1", "-tls1_1", "TLSv1.1"),
                                     ("tls_1_2", "-tls1_2", "TLSv1.2")):
            with self.subTest(port):
                text = self.client(port, flag, "-cipher", OLD_CIPHERS)
                self.assertRegex(text, rf"Protocol *: {protocol}\n")
                self.assertIn("Verify return code: 0 (ok)", text)
        for port in ("tls_1_0", "tls_1_1"):
            with self.subTest(port):
                self.assertIn("Cipher is (NONE)", self.client(port, "-tls1_2", "-cipher", OLD_CIPHERS))

    def test_a_request_comes_back_as_it_was_sent(self):
        self.assertEqual(self.content("/echo", b"a\0b"),
                         b"POST /echo HTTP/1.1\r\nHost: localhost\r\nContent-Length: 3\r\n\r\na\0b")

    def test_replies_break_off_where_they_say(self):
        self.assertEqual(self.content("/truncated"), b"x" * 400)
        self.assertIn(b"Content-Length: 1000\r\n", self.reply("/truncated"))
        self.assertEqual(self.content("/truncated-chunks"), b"190\r\n" + b"x" * 400 + b"\r\n3e8\r\n" + b"x" * 10)
        self.assertLess(len(self.content("/broken")), https_server.LARGE_BYTES)
        self.assertEqual(self.content("/large"), https_server.large())

    def test_a_kept_connection_ends_when_somebody_says_so(self):
        for port in ("mute", "slow"):
            with self.subTest(port), socket.create_connection(("127.0.0.1", self.service.ports[port])) as kept:
                if port == "slow":
                    kept.settimeout(CLIENT_SECONDS)
                    self.assertEqual(kept.recv(1), b"\x16")  # the greeting has begun
                else:
                    kept.settimeout(0.3)
                    self.assertRaises(TimeoutError, kept.recv, 1)
                kept.settimeout(CLIENT_SECONDS)
                self.assertEqual(self.content("/release"), b"released")
                while kept.recv(4096):
                    pass

    def test_it_listens_on_this_machine_alone(self):
        for name, listener in self.service.listeners.items():
            self.assertEqual(listener.server_address[0], "127.0.0.1", name)

    def test_nobody_takes_connections_at_the_closed_door(self):
        self.assertIn("Connection refused", self.client("refused"))


if __name__ == "__main__":
    unittest.main()
