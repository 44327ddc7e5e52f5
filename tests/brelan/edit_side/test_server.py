"""Who else than its own page asks the server of brelan edit gets no answer, and cannot hold it up."""
import json
import pathlib
import shutil
import socket
import tempfile
import time
import unittest

from served import DECK, SECONDS, Served, ServedCase

POLICY = ("default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data: blob:; connect-src 'self'; "
          "base-uri 'none'; form-action 'none'; frame-ancestors 'none'")
ROUTES = {"GET": ("", "page.css", "deck", "events"),
          "POST": ("check", "run", "details", "move", "draw", "save")}


class Attack(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.root = pathlib.Path(tempfile.mkdtemp(prefix="brelan-test-"))
        (cls.root / "deck.dat").write_bytes(DECK)
        (cls.root / "secret.txt").write_text("secret")
        cls.served = Served(cls.root / "deck.dat")

    @classmethod
    def tearDownClass(cls):
        status, said = cls.served.end()
        shutil.rmtree(cls.root)
        assert (status, said) == (0, ""), (status, said)

    def send(self, method, name, headers=None, body=None, token=None):
        """Status of an answer, whose head has all that protects the page."""
        status, got, text = self.served.request(method, f"/{token or self.served.token}/{name}", body, headers)
        self.assert_protected(got)
        if status >= 400 and text:
            self.assertEqual(list(json.loads(text)), ["error"])
        return status

    def assert_protected(self, headers):
        for name, value in (("Content-Security-Policy", POLICY), ("X-Content-Type-Options", "nosniff"),
                            ("Referrer-Policy", "no-referrer"), ("Cache-Control", "no-store"),
                            ("Cross-Origin-Resource-Policy", "same-origin"), ("Cross-Origin-Opener-Policy", "same-origin")):
            self.assertEqual(headers.get_all(name), [value])
        self.assertIsNone(headers["Access-Control-Allow-Origin"])

    def check(self, **changed):
        """Status of a question that is right but for these headers; None leaves one out."""
        headers = {name: value for name, value in {**self.served.own, **changed}.items() if value is not None}
        return self.send("POST", "check", headers, json.dumps({"text": "2 0\n"}))

    def raw(self, text):
        """The head that comes back for these bytes, empty where the connection is closed."""
        with socket.create_connection(("127.0.0.1", self.served.port), timeout=SECONDS) as connection:
            connection.sendall(text)
            answer = b""
            while b"\r\n\r\n" not in answer and (piece := connection.recv(65536)):
                answer += piece
        return answer

    def test_its_own_page_is_answered(self):
        self.assertEqual([self.send("GET", name) for name in ("", "page.css", "codemirror.js", "deck")], [200] * 4)
        self.assertEqual(self.check(), 200)
        self.assertEqual(self.check(Host=f"localhost:{self.served.port}", Origin=f"http://localhost:{self.served.port}"), 200)

    def test_without_the_token_there_is_nothing(self):
        for method, names in ROUTES.items():
            for name in names:
                for path in ("/" + name, f"//{name}", f"/{'0' * 32}/{name}", f"/{self.served.token[:-1]}/{name}",
                             f"/{self.served.token}0/{name}", f"/{self.served.token.upper()}x/{name}"):
                    status, headers, body = self.served.request(method, path, None if method == "GET" else "{}",
                                                                self.served.own if method == "POST" else {})
                    self.assertEqual((status, body), (404, b""), path)
                    self.assert_protected(headers)

    def test_the_token_is_another_each_time(self):
        other = Served(self.root / "deck.dat")
        self.assertNotEqual(other.token, self.served.token)
        self.assertRegex(other.token, "^[0-9a-f]{32}$")
        self.assertEqual(other.end(), (0, ""))

    def test_another_host_name_for_this_machine_is_refused(self):
        for host in ("evil.example", f"evil.example:{self.served.port}", "127.0.0.1", f"127.0.0.1:{self.served.port + 1}",
                     f"127.0.0.1:{self.served.port}.evil.example", ""):
            self.assertEqual(self.check(Host=host), 403, host)
            self.assertEqual(self.send("GET", "deck", {"Host": host}), 403, host)
        twice = f"GET /{self.served.token}/deck HTTP/1.1\r\nHost: {self.served.host}\r\nHost: evil.example\r\nConnection: close\r\n\r\n"
        self.assertIn(b" 403 ", self.raw(twice.encode()).splitlines()[0])

    def test_another_page_is_refused(self):
        for origin in ("http://evil.example", "null", f"https://{self.served.host}", f"http://127.0.0.1:{self.served.port + 1}", ""):
            self.assertEqual(self.check(Origin=origin), 403, origin)
            if origin:  # else as if there were none
                self.assertEqual(self.send("GET", "deck", {"Origin": origin}), 403, origin)

    def test_an_order_says_which_page_it_comes_from(self):
        self.assertEqual(self.check(Origin=None), 403)

    def test_a_form_cannot_order(self):
        for kind in (None, "text/plain", "application/x-www-form-urlencoded", "multipart/form-data; boundary=x",
                     "application/json, text/plain", "text/plain; application/json"):
            self.assertEqual(self.check(**{"Content-Type": kind}), 415, kind)

    def test_methods_are_not_mixed_up(self):
        for name in ROUTES["GET"]:
            self.assertEqual(self.send("POST", name, self.served.own, "{}"), 404, name)
        for name in ROUTES["POST"]:
            self.assertEqual(self.send("GET", name), 404, name)
        for method in ("PUT", "DELETE", "PATCH", "OPTIONS", "HEAD", "TRACE"):
            for name in ("deck", "save"):
                self.assertIn(self.send(method, name, self.served.own, "{}"), (400, 405), (method, name))

    def test_no_path_leads_to_a_file(self):
        for path in ("../secret.txt", "..%2fsecret.txt", "%2e%2e/secret.txt", "deck/../../secret.txt", "secret.txt", "deck.dat",
                     "./deck.dat", "//etc/passwd", "/etc/passwd", "..\\secret.txt", "page.css/../../secret.txt", "deck%00",
                     "page.html", "%", "%zz", "deck/", "deck?/../secret.txt%00"):
            status, _, body = self.served.request("GET", f"/{self.served.token}/{path}")
            self.assertNotIn(b"secret", body, path)
            self.assertEqual(status, 200 if path.startswith("deck?") else 404, path)
            for name in ROUTES["POST"]:
                self.assertEqual(self.send("POST", name + "/" + path, self.served.own, "{}"), 404, path)

    def test_too_much_is_refused(self):
        self.assertEqual(self.send("POST", "check", self.served.own, "x" * ((8 << 20) + 1)), 413)
        head = (f"POST /{self.served.token}/check HTTP/1.1\r\nHost: {self.served.host}\r\nOrigin: http://{self.served.host}\r\n"
                "Content-Type: application/json\r\nConnection: close\r\n")
        for more, status in (("Content-Length: 99999999999999\r\n", b" 413 "), ("Content-Length: -1\r\n", b" 411 "),
                             ("Content-Length: x\r\n", b" 411 "), ("", b" 411 "), ("Transfer-Encoding: chunked\r\n", b" 415 "),
                             ("Content-Length: 2\r\nContent-Length: 9\r\n", b" 411 "),
                             ("Content-Encoding: gzip\r\nContent-Length: 2\r\n", b" 415 ")):
            self.assertIn(status, self.raw((head + more + "\r\n").encode()).splitlines()[0], more)
        for long in (f"GET /{'x' * 20000} HTTP/1.1\r\nConnection: close\r\n\r\n",
                     f"GET / HTTP/1.1\r\nConnection: close\r\nX: {'x' * 20000}\r\n\r\n"):
            self.assertRegex(self.raw(long.encode()), b"^$|^HTTP/1.1 4")

    def test_what_was_sent_with_a_refusal_is_no_request(self):
        inner = f"GET /{self.served.token}/deck HTTP/1.1\r\nHost: {self.served.host}\r\n\r\n"
        status, headers, _ = self.served.request("POST", "/", inner, {"Content-Type": "text/plain"})
        self.assertEqual((status, headers["Connection"]), (404, "close"))

    def test_what_is_no_question_is_told(self):
        deep = "[" * 100000 + "]" * 100000
        for body in (deep, '{"text":' + deep + "}", "", "{", "nonsense", "[]", "null", '"text"', '{"text": 5}', '{"text": "\ud800"}',
                     b'{"text": "\xff"}', '{"text": "2 0\\n", "text": {}}'):
            body = body if isinstance(body, bytes) else body.encode(errors="surrogatepass")
            self.assertEqual(self.send("POST", "check", self.served.own, body), 422, body[:20])
        for name in ROUTES["POST"]:
            self.assertEqual(self.send("POST", name, self.served.own, "{}"), 422, name)
        for run in ({"cut": "none", "number": 1}, {"cut": "auto", "number": "1"}, {"cut": "auto", "number": 1e300}, {"cut": 1}):
            self.assertEqual(self.send("POST", "run", self.served.own, json.dumps({"text": "2 0\n", **run})), 422, run)

    def test_garbage_ends_only_its_own_connection(self):
        for text in (b"\0" * 1000 + b"\r\n\r\n", b"GET\r\n\r\n", b"GET / HTTP/9.9\r\n\r\n", b"\r\n\r\n", b"GET http://evil/ HTTP/1.1\r\n\r\n"):
            with socket.create_connection(("127.0.0.1", self.served.port), timeout=SECONDS) as connection:
                connection.sendall(text)
        self.assertEqual(self.check(), 200)

    def test_parts_of_an_answer_are_not_given(self):
        self.assertIn(self.send("GET", "codemirror.js", {"Range": "bytes=" + ",".join(["0-"] * 500)}), (400, 416))

    def test_slow_connections_hold_nobody_up(self):
        slow = []
        for _ in range(40):
            slow.append(socket.create_connection(("127.0.0.1", self.served.port), timeout=SECONDS))
            time.sleep(0.003)  # not more at once than the system lets wait
        for connection in slow[20:]:
            connection.sendall(f"POST /{self.served.token}/check HTTP/1.1\r\nContent-Le".encode())
        begun = time.monotonic()
        self.assertEqual(self.check(), 200)
        self.assertLess(time.monotonic() - begun, 3.0)
        for connection in slow:
            connection.close()

    def test_only_this_machine_can_connect(self):
        with open("/proc/net/tcp", encoding="ascii") as table:
            listening = [row.split()[1] for row in table if row.split()[3] == "0A"]
        self.assertEqual([a for a in listening if a.endswith(f":{self.served.port:04X}")], [f"0100007F:{self.served.port:04X}"])
        with open("/proc/net/tcp6", encoding="ascii") as table:  # and by no other family
            self.assertNotIn(f":{self.served.port:04X} ", table.read())


class Command(ServedCase):
    def test_a_port_that_is_taken_is_told(self):
        served = self.serve()
        with self.assertRaisesRegex(AssertionError, f"port {served.port}: cannot be listened at"):
            Served(self.file, "--port", str(served.port))

    def test_what_is_no_deck_is_told(self):
        for content, message in ((b"2 0\n\0", "line 2: expected a card deck, found a zero byte"),
                                 (b"2 0\r3\n", "line 1: expected a card deck, found a carriage return that ends no line")):
            with self.assertRaisesRegex(AssertionError, message):
                self.serve(content)
        self.file.unlink()
        with self.assertRaisesRegex(AssertionError, "there is none of this name"):
            self.serve(None)

    def test_nothing_on_the_page_is_written_in_line(self):
        _, page = self.serve().get("")
        for part in (b"style=", b" onclick", b"javascript:", b"http:", b"https:"):
            self.assertNotIn(part, page)
        self.assertEqual(page.count(b"<script"), page.count(b"<script src=") + page.count(b'<script type="module" src='))


if __name__ == "__main__":
    unittest.main()
