"""Servers that no vendor would run: they say nothing, stand in between, or say what they are told, byte for byte."""

import socket
import ssl
import threading

NOBODY = "https://localhost:1"  # where no server listens


class _Listener:
    """Takes connections on loopback, or at the path of a socket, each on a thread of its own, until `close`."""

    def __init__(self, path=None):
        if path:
            self._socket = socket.socket(socket.AF_UNIX)
            self._socket.bind(str(path))
            self._socket.listen()
        else:
            self._socket = socket.create_server(("127.0.0.1", 0))
            self.port = self._socket.getsockname()[1]
        self.connections = 0
        self._open = []
        self._threads = [threading.Thread(target=self._take, daemon=True)]
        self._threads[0].start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        for connection in (self._socket, *self._open):
            _cut(connection)
        for thread in self._threads:
            thread.join()

    def _take(self):
        while True:
            try:
                connection, _ = self._socket.accept()
            except OSError:
                return
            self.connections += 1
            self._open.append(connection)
            thread = threading.Thread(target=self._serve_and_close, args=[connection], daemon=True)
            self._threads.append(thread)
            thread.start()

    def _serve_and_close(self, connection):
        try:
            self.serve(connection)
        except OSError:
            pass  # the other side has gone
        finally:
            _cut(connection)

    def serve(self, connection):
        raise NotImplementedError


class SilentServer(_Listener):
    """Takes every connection and never sends a byte."""

    @property
    def origin(self):
        return f"https://localhost:{self.port}"

    def serve(self, connection):
        while connection.recv(4096):
            pass


class ScriptedServer(_Listener):
    """Speaks TLS with a vendor's certificate, and answers each request with the bytes, or by the function, given."""

    def __init__(self, vendor, answer):
        self._context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self._context.load_cert_chain(vendor.folder / "server.pem", vendor.folder / "server-key.pem")
        self._answer = answer
        self.requests = []
        super().__init__()

    @property
    def origin(self):
        return f"https://localhost:{self.port}"

    def serve(self, connection):
        with self._context.wrap_socket(connection, server_side=True) as stream:
            self._open.append(stream)
            self.requests.append(_head(stream).partition(" HTTP/")[0])
            if callable(self._answer):
                self._answer(stream)
            else:
                stream.sendall(self._answer)
            stream.unwrap()


class Proxy(_Listener):
    """Leads every tunnel to this machine's `port`, whatever host was asked for; with `refusal`, answers that."""

    def __init__(self, port=None, refusal=None):
        self._target = port
        self._refusal = refusal
        self.requests = []
        super().__init__()

    @property
    def url(self):
        return f"http://127.0.0.1:{self.port}"

    def serve(self, connection):
        self.requests.append(_head(connection).partition(" HTTP/")[0])
        if self._refusal:
            connection.sendall(self._refusal)
            return
        with socket.create_connection(("127.0.0.1", self._target)) as target:
            self._open.append(target)
            connection.sendall(b"HTTP/1.1 200 Connection established\r\n\r\n")
            back = threading.Thread(target=_pass_on, args=[target, connection], daemon=True)
            back.start()
            _pass_on(connection, target)
            back.join()


def _head(stream):
    head = b""
    while b"\r\n\r\n" not in head and (piece := stream.recv(4096)):
        head += piece
    return head.decode("latin-1")


def _pass_on(source, target):
    try:
        while piece := source.recv(65536):
            target.sendall(piece)
        target.shutdown(socket.SHUT_WR)
    except OSError:
        pass  # one of the two has gone, and the other notices


def _cut(connection):
    """Ends whatever a thread is waiting for there, too."""
    try:
        connection.shutdown(socket.SHUT_RDWR)
    except OSError:
        pass
    connection.close()
