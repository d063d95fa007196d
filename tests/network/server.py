#!/usr/bin/env python3
"""Runs a command beside a web server that misbehaves on purpose; both end together.

usage: server.py COMMAND [ARGUMENT...]

The command finds three ports of 127.0.0.1 in its environment, VHRT_HTTP_PORT, VHRT_HTTPS_PORT and
VHRT_UNTRUSTED_PORT (https with a certificate of nobody's), and in VHRT_TEST_CA the certificate that the second one's
comes from.

An address is /NAME?size=N&key=K&... : N bytes, byte i being (7 i + i / 251) mod 256, written down under the key K.
Further parameters are what goes wrong:
  drop=AT       resets the connection before byte AT of the whole file; with times=T only T times for the key
  close=AT      the same, but closes it in order
  stall=AT      sends nothing more from byte AT on, until the client goes
  drip=MS       sends 2000 bytes, then waits MS milliseconds, and so on; with until=AT only before byte AT
  length=none   tells no length; length=M tells M
  range=ignore  answers a request for a part with everything; range=shift with a part that begins a byte later
  status=S      answers S with a short body; with times=T only T times for the key
  chunked=1     sends chunks and no length
  to=ADDRESS    redirects
  header=NAME   writes down this header in place of the part
  text=T, wide=T     sends this text, in UTF-8 or in UTF-16 with its mark, "~" being a line end; repeat=N times, with
                     tail=T behind it
  user=U&password=P  wants these, with domain=D the user DOMAIN\\USER
/log?key=K tells what was asked under the key: a line for each request, the part that it wants or "-".
"""
import http.server
import os
import pathlib
import socket
import ssl
import struct
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse
from base64 import b64decode
from collections import defaultdict

LARGEST = 256 << 20
STEP = 1 << 20
PATTERN = bytes((7 * i + i // 251) % 256 for i in range(251 * 256))
# Any step of the pattern is one piece of this.
REPEATED = memoryview(PATTERN * (STEP // len(PATTERN) + 2))
lock = threading.Lock()
requests = defaultdict(list)
faults = defaultdict(int)
revoked = None


def content(start, end):
    """The file's bytes, no more than a step; the pattern begins anew after its own length."""
    first = start % len(PATTERN)
    return REPEATED[first:first + end - start]


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    timeout = 60

    def log_message(self, *_):
        pass

    def ask(self, name, otherwise=None):
        return self.query.get(name, [otherwise])[0]

    def number(self, name, otherwise=None):
        value = self.ask(name)
        return otherwise if value is None else int(value)

    def strikes(self):
        """Whether the fault happens, which may be limited for the key."""
        times = self.number("times")
        with lock:
            faults[self.key] += 1
            return times is None or faults[self.key] <= times

    def write_down(self):
        with lock:
            requests[self.key].append(self.headers.get(self.ask("header", "Range"), "-"))

    def short(self, status, text, **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text.encode())

    def do_GET(self):
        parts = urllib.parse.urlsplit(self.path)
        self.query = urllib.parse.parse_qs(parts.query)
        self.key = self.ask("key", "")
        if parts.path == "/log":
            return self.tell_log()
        if parts.path == "/ca.crl":
            self.wfile.write(b"HTTP/1.0 200 OK\r\n\r\n" + revoked.read_bytes())
            self.close_connection = True
            return
        self.write_down()
        if self.ask("user") and not self.knows_user():
            return self.short(401, "who?", WWW_Authenticate='Basic realm="test"')
        if self.ask("to"):
            return self.short(302, "there", Location=self.ask("to"))
        if self.ask("status") and self.strikes():
            return self.short(self.number("status"), "no")
        self.send_file()

    def tell_log(self):
        with lock:
            lines = "".join(part + "\n" for part in requests[self.key])
        self.short(200, lines)

    def knows_user(self):
        given = self.headers.get("Authorization", "")
        return given.startswith("Basic ") and \
            b64decode(given[6:]).decode() == self.wanted_user() + ":" + self.ask("password", "")

    def wanted_user(self):
        domain = self.ask("domain")
        return (domain + "\\" if domain else "") + self.ask("user")

    def own_text(self):
        text = self.ask("text") or self.ask("wide")
        if text is None:
            return None
        text = (text * self.number("repeat", 1) + self.ask("tail", "")).replace("~", "\r\n")
        return text.encode() if self.ask("text") else b"\xff\xfe" + text.encode("utf-16-le")

    def send_file(self):
        self.text = self.own_text()
        size = min(self.number("size", 1000), LARGEST) if self.text is None else len(self.text)
        part = self.headers.get("Range")
        start = 0
        if part and self.ask("range") != "ignore":
            start = int(part.removeprefix("bytes=").split("-")[0])
            if not 0 <= start < size:
                return self.short(416, "no such part")
            if self.ask("range") == "shift":
                start += 1
        partial = part and self.ask("range") != "ignore"
        self.send_response(206 if partial else 200)
        if partial:
            self.send_header("Content-Range", f"bytes {start}-{size - 1}/{size}")
        self.send_header("Last-Modified", "Wed, 21 Oct 2015 07:28:00 GMT")
        chunked = self.ask("chunked") is not None
        told = self.ask("length", str(size - start))
        if chunked:
            self.send_header("Transfer-Encoding", "chunked")
        elif told != "none":
            self.send_header("Content-Length", told)
        if chunked or told == "none" or int(told) != size - start:
            self.send_header("Connection", "close")
            self.close_connection = True
        self.end_headers()
        self.send_body(start, size, chunked)

    def send_body(self, start, size, chunked):
        end, fault = size, None
        for name in ("drop", "close", "stall"):
            at = self.number(name)
            if at is not None and start < at < size and self.strikes():
                end, fault = at, name
        pause = self.number("drip", 0) / 1000
        slow_end = min(self.number("until", end), end) if pause else start
        at = start
        while at < end:
            slow = at < slow_end
            to = min(at + (2000 if slow else STEP), end)
            piece = content(at, to) if self.text is None else self.text[at:to]
            self.wfile.write(b"%x\r\n%b\r\n" % (len(piece), piece) if chunked else piece)
            if slow:
                self.wfile.flush()
                time.sleep(pause)
            at = to
        if chunked and not fault:
            self.wfile.write(b"0\r\n\r\n")
        self.wfile.flush()
        if fault:
            self.break_off(fault)

    def break_off(self, fault):
        self.close_connection = True
        if fault == "stall":
            # The client sends nothing more: what comes is its end.
            self.connection.recv(1)
            return
        # The client waits for more when the fault comes: a reset that it finds already there, Wine takes for the end.
        time.sleep(0.7)
        if fault == "drop":
            self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.connection.close()


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 64

    def handle_error(self, *_):
        # A client that goes in the middle is what many tests are about.
        pass


def openssl(folder, *words):
    subprocess.run(["openssl", *words], cwd=folder, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def make_certificates(folder, http_port):
    """An authority, a certificate of its for the address, and one that is nobody's."""
    (folder / "names").write_text("subjectAltName=IP:127.0.0.1,DNS:127.0.0.1\n"
                                  f"crlDistributionPoints=URI:http://127.0.0.1:{http_port}/ca.crl\n")
    new = ("req", "-newkey", "rsa:2048", "-nodes", "-days", "2")
    openssl(folder, *new, "-x509", "-keyout", "ca.key", "-out", "ca.pem", "-subj", "/CN=VHRT test authority",
            "-addext", "basicConstraints=critical,CA:TRUE")
    openssl(folder, "x509", "-in", "ca.pem", "-outform", "DER", "-out", "ca.der")
    openssl(folder, *new, "-keyout", "trusted.key", "-out", "trusted.csr", "-subj", "/CN=127.0.0.1")
    openssl(folder, "x509", "-req", "-in", "trusted.csr", "-CA", "ca.pem", "-CAkey", "ca.key", "-CAcreateserial",
            "-days", "2", "-extfile", "names", "-out", "trusted.pem")
    # Clients ask which certificates the authority has taken back: none.
    (folder / "index").touch()
    (folder / "ca.conf").write_text("[ca]\ndefault_ca=here\n[here]\ndatabase=index\ndefault_md=sha256\n")
    openssl(folder, "ca", "-config", "ca.conf", "-gencrl", "-crldays", "2", "-cert", "ca.pem", "-keyfile", "ca.key",
            "-out", "crl.pem")
    openssl(folder, "crl", "-in", "crl.pem", "-outform", "DER", "-out", "ca.crl")
    openssl(folder, *new, "-x509", "-keyout", "untrusted.key", "-out", "untrusted.pem", "-subj", "/CN=127.0.0.1")


def serve(folder=None, certificate=None):
    server = Server(("127.0.0.1", 0), Handler)
    if certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(folder / f"{certificate}.pem", folder / f"{certificate}.key")
        server.socket = context.wrap_socket(server.socket, server_side=True, do_handshake_on_connect=False)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return str(server.server_address[1])


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    with tempfile.TemporaryDirectory(prefix="vhrt-network") as name:
        folder = pathlib.Path(name)
        http_port = serve()
        make_certificates(folder, http_port)
        global revoked
        revoked = folder / "ca.crl"
        environment = dict(os.environ, VHRT_HTTP_PORT=http_port, VHRT_HTTPS_PORT=serve(folder, "trusted"),
                           VHRT_UNTRUSTED_PORT=serve(folder, "untrusted"), VHRT_TEST_CA=str(folder / "ca.der"))
        sys.exit(subprocess.run(sys.argv[1:], env=environment).returncode)


if __name__ == "__main__":
    main()
