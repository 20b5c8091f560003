"""The service over real connections of this machine, with a model of our own behind it."""
import contextlib
import http.client
import http.server
import io
import json
import os
import pathlib
import socketserver
import sys
import tempfile
import threading
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

import answers  # noqa: E402
import endpoint  # noqa: E402
import service  # noqa: E402

KEY = "secret-key-0815"
VERSION = {"latest_version": "2.0", "update_deadline": "2027-01-31", "update_required": True, "download_url": "/s/v.exe"}
SETUP = {"setup_url": "/s/v.exe", "file_name": "v.exe"}


def request_of(*items):
    """A body as the program writes it."""
    prompts = ",\n".join(f'    {{\n      "id": {json.dumps(identifier, ensure_ascii=False)},\n'
                         f'      "prompt": {json.dumps(prompt, ensure_ascii=False)}\n    }}'
                         for identifier, prompt in items)
    return f'{{\n  "model": "gpt-4.1-mini",\n  "prompts": [\n{prompts}\n  ]\n}}\n'


def value_of(text, key):
    """One member, as the program reads it: by search."""
    found = text.find(f'"{key}"')
    colon = text.find(":", found + len(key) + 2) if found >= 0 else -1
    if colon < 0:
        return ""
    ends = [end for end in (text.find(sign, colon + 1) for sign in ",}") if end >= 0]
    value = text[colon + 1:min(ends, default=len(text))].strip(" \t\r\n")
    return value[1:-1] if len(value) >= 2 and value[0] == value[-1] == '"' else value


def group_of(reply, identifier):
    """The group that the program finds for an id; empty when it leaves the item as it is."""
    found = reply.find(f'"{identifier}"')
    content = reply.find('"content"', found) if found >= 0 else -1
    opening = reply.find("{", content) if content >= 0 else -1
    closing = reply.find("}", opening) if opening >= 0 else -1
    return value_of(reply[opening:closing + 1].replace('\\"', '"'), "group") if closing >= 0 else ""


class Model(socketserver.ThreadingTCPServer):
    """Answers each prompt with what `say` makes of it, and keeps what it was asked."""

    daemon_threads = True

    def __init__(self, say):
        super().__init__(("127.0.0.1", 0), self.Handler)
        self.say = say
        self.asked = []
        self.closing = threading.Event()

    def handle_error(self, request, client_address):
        pass  # the service does not wait for an answer that comes too late

    @property
    def url(self):
        return f"http://127.0.0.1:{self.server_address[1]}/v1/chat/completions"

    class Handler(http.server.BaseHTTPRequestHandler):
        def do_GET(self):
            self.server.asked.append((self.headers.get("Authorization"), None))
            self.send_error(404)

        def do_POST(self):
            body = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
            self.server.asked.append((self.headers.get("Authorization"), body))
            status, text = self.server.say(self.server, body["messages"][0]["content"])
            content = text.encode()
            self.send_response(status)
            if status == 302:
                self.send_header("Location", self.server.url)
            self.send_header("Content-Length", str(len(content)))
            self.end_headers()
            self.wfile.write(content)

        def log_message(self, *_):
            pass


def completion(text):
    return json.dumps({"choices": [{"message": {"role": "assistant", "content": text}}]})


def office(_, prompt):
    return 200, completion(json.dumps({"group": "Office" if "office" in prompt else "Others"}))


class ServiceTest(unittest.TestCase):
    def setUp(self):
        self.log = []
        self.stack = contextlib.ExitStack()
        self.addCleanup(self.stack.close)

    def run_server(self, server):
        thread = threading.Thread(target=server.serve_forever, kwargs={"poll_interval": 0.02})
        thread.start()
        self.stack.callback(server.server_close)
        self.stack.callback(thread.join)
        self.stack.callback(server.shutdown)
        return server

    def start(self, table=None, model=None):
        made = service.Service(answers.Table(table or {}), model)
        self.server = self.run_server(service.Server(("127.0.0.1", 0), made, None, self.log.append))

    def start_model(self, say, **more):
        self.model = self.run_server(Model(say))
        return endpoint.Endpoint(self.model.url, key=KEY, **more)

    def post(self, path, body="", method="POST"):
        connection = http.client.HTTPConnection("127.0.0.1", self.server.server_address[1], timeout=30)
        with contextlib.closing(connection):
            headers = {"Content-Type": "application/x-www-form-urlencoded"}
            connection.request(method, path, body.encode("utf-8"), headers)
            reply = connection.getresponse()
            return reply.status, reply.read().decode("utf-8")

    def groups(self, *items):
        status, reply = self.post("/php/api_llm.php", request_of(*items))
        self.assertEqual(status, 200)
        return reply

    def test_the_version_is_read_as_it_was_written(self):
        self.start({"version": VERSION})
        status, reply = self.post("/php/version_info.php", "language=German&country=Germany")
        self.assertEqual(status, 200)
        self.assertEqual([value_of(reply, key) for key in answers.VERSION_KEYS],
                         ["2.0", "2027-01-31", "true", "/s/v.exe"])

    def test_the_setup_is_read_as_it_was_written(self):
        self.start({"setup": SETUP})
        reply = self.post("/php/get_setup_url.php")[1]
        self.assertEqual([value_of(reply, key) for key in answers.SETUP_KEYS], ["/s/v.exe", "v.exe"])

    def test_what_the_table_does_not_know_is_an_empty_reply(self):
        self.start()
        self.assertEqual(self.post("/php/version_info.php", "language=x&country=y"), (200, ""))
        self.assertEqual(self.post("/php/get_setup_url.php"), (200, ""))

    def test_groups_of_the_table_are_found_by_id(self):
        self.start({"groups": {".docx": "Office Documents", ".png": "Images", "B\u00fcro \u65e5": "Office"}})
        reply = self.groups((".png", "p"), (".doc", "p"), (".docx", "p"), ("B\u00fcro \u65e5", "p"))
        self.assertEqual(group_of(reply, ".png"), "Images")
        self.assertEqual(group_of(reply, ".docx"), "Office Documents")
        self.assertEqual(group_of(reply, "B\u00fcro \u65e5"), "Office")
        self.assertEqual(group_of(reply, ".doc"), "")

    def test_what_the_table_does_not_know_goes_to_the_model(self):
        self.start({"groups": {"a": "Browser"}}, self.start_model(office))
        reply = self.groups(("a", "unused"), ("b", "an office"), ("c", "a thing"))
        self.assertEqual([group_of(reply, identifier) for identifier in "abc"], ["Browser", "Office", "Others"])
        self.assertEqual(sorted(body["messages"][0]["content"] for _, body in self.model.asked), ["a thing", "an office"])
        self.assertEqual({body["model"] for _, body in self.model.asked}, {"gpt-4.1-mini"})
        self.assertEqual({key for key, _ in self.model.asked}, {f"Bearer {KEY}"})

    def test_the_model_can_be_chosen_and_needs_no_key(self):
        model = self.run_server(Model(office))
        self.start(model=endpoint.Endpoint(model.url, model="small"))
        self.groups(("b", "an office"))
        self.assertEqual([(key, body["model"]) for key, body in model.asked], [(None, "small")])

    def test_two_items_of_one_id_are_asked_once(self):
        self.start(model=self.start_model(office))
        self.assertEqual(group_of(self.groups(("b", "an office"), ("b", "a thing")), "b"), "Office")
        self.assertEqual(len(self.model.asked), 1)

    def test_an_answer_that_could_be_misread_is_left_out(self):
        said = {"prose": "It is Office.", "list": '["Office"]', "number": '{"group":1}', "empty": '{"group":""}',
                "comma": '{"group":"A, B"}', "brace": '{"group":"A}"}', "quote": '{"group":"A\\"B"}', "deep": "[" * 50_000}
        self.start(model=self.start_model(lambda _, prompt: (200, completion(said.get(prompt, '{"group":"Office"}')))))
        reply = self.groups(*((name, name) for name in said), ("good", "good"))
        self.assertEqual(json.loads(reply), {"good": {"content": '{"group":"Office"}'}})
        # An item without an answer must not be given the next one's.
        self.assertEqual([group_of(reply, name) for name in said], [""] * len(said))

    def test_a_model_that_fails_leaves_the_items_open(self):
        for status, text in ((500, "x"), (401, "x"), (200, "no json"), (200, "{}"), (200, '{"choices":[]}')):
            with self.subTest(status=status, text=text):
                self.start(model=self.start_model(lambda *_, answer=(status, text): answer))
                self.assertEqual(self.groups(("b", "x")), "{}")

    def test_a_model_that_is_not_there_leaves_the_items_open(self):
        gone = Model(office)
        gone.server_close()
        self.start(model=endpoint.Endpoint(gone.url))
        self.assertEqual(self.groups(("b", "x")), "{}")

    def test_the_key_does_not_follow_a_redirect(self):
        self.start(model=self.start_model(lambda *_: (302, "")))
        self.assertEqual(self.groups(("b", "x")), "{}")
        self.assertEqual(len(self.model.asked), 1)

    def test_answers_that_come_too_late_are_left_out(self):
        def slow(model, prompt):
            if prompt == "slow":
                model.closing.wait(30)
            return office(model, "office")
        self.start(model=self.start_model(slow, all_seconds=1))
        self.stack.callback(self.model.closing.set)
        reply = self.groups(("a", "slow"), ("b", "fast"))
        self.assertEqual((group_of(reply, "a"), group_of(reply, "b")), ("", "Office"))

    def test_the_log_holds_numbers_and_nothing_that_was_sent(self):
        self.start({"groups": {"Private Program": "Browser"}}, self.start_model(office))
        self.groups(("Private Program", "private prompt"), ("Other Program", "private office"))
        self.post("/php/version_info.php", "language=Klingon&country=Atlantis")
        self.post("/private/path?private=1")
        self.post("/php/api_llm.php", "private nonsense")
        text = "\n".join(self.log)
        self.assertEqual(len(self.log), 4, text)
        self.assertIn("2 asked, 1 from the table, 1 from the model, 0 open", text)
        for word in ("rivate", "Program", "Klingon", "Atlantis", KEY, "127.0.0.1"):
            self.assertNotIn(word, text)

    def test_other_addresses_and_methods_are_refused(self):
        self.start()
        self.assertEqual(self.post("/php/other.php")[0], 404)
        self.assertEqual(self.post("/php/version_info.php", method="GET")[0], 501)

    def test_a_request_of_another_form_is_refused(self):
        self.start({"groups": {"a": "Browser"}})
        for body in ("", "nonsense", "[]", "{}", '{"model":1,"prompts":[]}', '{"model":"m","prompts":[{"id":1,"prompt":""}]}',
                     '{"model":"m","prompts":[{"id":"a"}]}', request_of(("a", "x" * 20_000)), "[" * 100_000,
                     request_of(*(("a", "p") for _ in range(answers.PROMPT_LIMIT + 1)))):
            with self.subTest(body[:40]):
                status, reply = self.post("/php/api_llm.php", body)
                self.assertEqual((status, group_of(reply, "a")), (400, ""))

    def test_a_body_without_or_beyond_its_length_is_refused(self):
        self.start()
        for length, expected in ((None, 411), ("x", 411), ("-1", 413), (str(service.BODY_LIMIT_BYTES + 1), 413)):
            with self.subTest(length), contextlib.closing(
                    http.client.HTTPConnection("127.0.0.1", self.server.server_address[1], timeout=30)) as connection:
                connection.putrequest("POST", "/php/api_llm.php")
                if length:
                    connection.putheader("Content-Length", length)
                connection.endheaders()
                self.assertEqual(connection.getresponse().status, expected)


class TableTest(unittest.TestCase):
    def test_the_example_is_in_order(self):
        table = answers.Table.from_file(pathlib.Path(__file__).with_name("example_table.json"))
        self.assertEqual(table.version["update_required"], "false")

    def test_what_the_program_would_misread_is_refused(self):
        for text in ("1,2", "{1}", 'a"b', "a\\b", "a\nb"):
            for content in ({"groups": {"a": text}}, {"setup": {**SETUP, "file_name": text}},
                            {"version": {**VERSION, "latest_version": text}}):
                with self.subTest(content):
                    self.assertRaises(answers.Fault, answers.Table, content)

    def test_a_table_of_another_form_is_refused(self):
        for content in ([], {"other": 1}, {"groups": []}, {"groups": {"a": 1}}, {"version": {}}, {"setup": 1}):
            with self.subTest(content):
                self.assertRaises(answers.Fault, answers.Table, content)
        with tempfile.TemporaryDirectory() as folder:
            broken = pathlib.Path(folder, "table.json")
            broken.write_text("{")
            self.assertRaises(answers.Fault, answers.Table.from_file, broken)
            self.assertRaises(answers.Fault, answers.Table.from_file, broken.with_name("none.json"))


class StartTest(unittest.TestCase):
    def test_the_key_comes_from_the_environment_or_a_file_and_not_from_the_command_line(self):
        with mock.patch.dict(os.environ, {"VARNELO_MODEL_KEY": KEY}):
            self.assertEqual(service.key_of(None), KEY)
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, "key")
            file.write_text(KEY + "\n")
            self.assertEqual(service.key_of(str(file)), KEY)
        with contextlib.redirect_stderr(io.StringIO()):
            self.assertRaises(SystemExit, service.options, ["--table", "t", "--key", KEY])

    def test_an_endpoint_elsewhere_needs_https(self):
        for url in ("http://model.example/v1", "ftp://model.example", "model.example", "http://127.0.0.1.model.example/"):
            with self.subTest(url):
                self.assertRaises(answers.Fault, endpoint.Endpoint, url)
        endpoint.Endpoint("https://model.example/v1/chat/completions")


if __name__ == "__main__":
    unittest.main()
