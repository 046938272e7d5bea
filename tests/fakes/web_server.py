#!/usr/bin/env python3
"""A web server on 127.0.0.1 with the bad habits of real ones.

Prints "listening PORT" (a port that the kernel chose) and serves until it is ended. Every request
is noted on standard output as "request METHOD TARGET".

  /length?size=N      N bytes, with their length        /chunked?size=N   N bytes in chunks
  /close?size=N       N bytes, no length, then the end  /empty            no bytes, with length 0
  /file?path=P        the bytes of a file               /status?code=N    a page with that status
  /redirect?to=URL    a redirect, as it is written      /loop             a redirect to itself
  /short?size=N       half of N promised bytes, an orderly end
  /reset?size=N       half of N promised bytes, then a reset
  /stall              no answer at all                  /stall-body       half the body, then nothing
  /held?size=N&path=P     half of N bytes, the other half once the file P stands
  /drip?count=N&pause=S[&size=B]  N pieces of one byte, or of B, S seconds apart
  /agent              the User-Agent it was sent        /endless          bytes without end
  /endless-head       header lines without end

As a proxy it answers an absolute "GET http://..." with the text "proxied URL" and relays CONNECT.
Bytes repeat the pattern 0 to 250, so that a part in the wrong place shows.

Usage: web_server.py [--tls CERTIFICATE KEY]
"""
import argparse
import http.server
import os
import select
import socket
import socketserver
import ssl
import struct
import sys
import time
import urllib.parse

PATTERN = bytes(range(251)) * 4096


def pattern(size):
    """The first `size` bytes of the pattern in pieces."""
    while size > 0:
        piece = PATTERN[:min(size, len(PATTERN))]
        size -= len(piece)
        yield piece


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def do_GET(self):
        print("request", self.command, self.path, flush=True)
        if self.path.startswith("http://"):
            return self.answer(b"proxied " + self.path.encode())
        url = urllib.parse.urlsplit(self.path)
        self.query = dict(urllib.parse.parse_qsl(url.query))
        page = getattr(self, "page_" + url.path[1:].replace("-", "_"), None)
        if page is None:
            return self.answer(b"not found", 404)
        try:
            page()
        except (BrokenPipeError, ConnectionResetError):
            self.close_connection = True

    def do_CONNECT(self):
        print("request", self.command, self.path, flush=True)
        host, port = self.path.rsplit(":", 1)
        with socket.create_connection((host, int(port))) as other:
            self.send_response(200)
            self.end_headers()
            relay(self.connection, other)
        self.close_connection = True

    def size(self):
        return int(self.query["size"])

    def head(self, status=200, **fields):
        self.send_response(status)
        for name, value in fields.items():
            self.send_header(name.replace("_", "-"), str(value))
        self.end_headers()

    def answer(self, body, status=200):
        self.head(status, Content_Length=len(body))
        self.wfile.write(body)

    def write(self, size):
        for piece in pattern(size):
            self.wfile.write(piece)

    def page_length(self):
        self.head(Content_Length=self.size())
        self.write(self.size())

    def page_close(self):
        self.head(Connection="close")
        self.write(self.size())
        self.close_connection = True

    def page_chunked(self):
        self.head(Transfer_Encoding="chunked")
        for piece in pattern(self.size()):
            self.wfile.write(b"%x\r\n%s\r\n" % (len(piece), piece))
        self.wfile.write(b"0\r\n\r\n")

    def page_empty(self):
        self.answer(b"")

    def page_file(self):
        with open(self.query["path"], "rb") as file:
            size = file.seek(0, 2)
            file.seek(0)
            self.head(Content_Length=size)
            self.wfile.flush()
            self.connection.sendfile(file)

    def page_status(self):
        self.answer(b"<html>an error page</html>", int(self.query["code"]))

    def page_redirect(self):
        self.head(302, Location=self.query["to"], Content_Length=11)
        self.wfile.write(b"go on there")

    def page_loop(self):
        self.head(302, Location="/loop", Content_Length=0)

    def page_short(self):
        self.head(Content_Length=self.size())
        self.write(self.size() // 2)
        self.close_connection = True

    def page_reset(self):
        self.head(Content_Length=self.size())
        self.write(self.size() // 2)
        self.wfile.flush()
        time.sleep(0.2)
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.connection.close()
        self.close_connection = True

    def page_stall(self):
        time.sleep(60)

    def page_stall_body(self):
        self.head(Content_Length=2000)
        self.write(1000)
        self.wfile.flush()
        time.sleep(60)

    def page_held(self):
        self.head(Content_Length=self.size())
        body = b"".join(pattern(self.size()))
        self.wfile.write(body[:len(body) // 2])
        self.wfile.flush()
        while not os.path.exists(self.query["path"]):
            time.sleep(0.01)
        self.wfile.write(body[len(body) // 2:])

    def page_drip(self):
        count = int(self.query["count"])
        piece = b"d" * int(self.query.get("size", 1))
        self.head(Content_Length=count * len(piece))
        for _ in range(count):
            self.wfile.write(piece)
            self.wfile.flush()
            time.sleep(float(self.query["pause"]))

    def page_endless(self):
        self.head(Connection="close")
        while True:
            self.wfile.write(PATTERN[:65536])

    def page_agent(self):
        self.answer(self.headers.get("User-Agent", "none").encode())

    def page_endless_head(self):
        self.wfile.write(b"HTTP/1.1 200 OK\r\n")
        while True:
            self.wfile.write(b"X-Filling: %s\r\n" % (b"f" * 1000))


def relay(one, other):
    """Copies between two connections until one of them ends."""
    while True:
        for ready in select.select([one, other], [], [])[0]:
            data = ready.recv(65536)
            if not data:
                return
            (other if ready is one else one).sendall(data)


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def server_bind(self):
        socketserver.TCPServer.server_bind(self)  # the nearer one asks the network for its name

    def handle_error(self, *_):
        pass  # a client that does not trust the certificate, or goes away, is part of the tests


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--tls", nargs=2)
    options = parser.parse_args()
    server = Server(("127.0.0.1", 0), Handler)
    if options.tls:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*options.tls)
        server.socket = context.wrap_socket(server.socket, server_side=True,
                                            do_handshake_on_connect=False)
    print("listening", server.server_address[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    sys.exit(main())
