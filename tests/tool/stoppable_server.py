"""A web server of a test that goes away in the middle of its answers."""

import http.server
import threading


class StoppableServer(http.server.ThreadingHTTPServer):
    """On a free port of the loopback address, unless a port is given. Handlers look at is_stopped while they answer."""

    daemon_threads = True
    allow_reuse_address = True

    def __init__(self, handler: type[http.server.BaseHTTPRequestHandler], port: int = 0) -> None:
        super().__init__(("127.0.0.1", port), handler)
        self.is_stopped = threading.Event()

    def begin(self) -> None:
        threading.Thread(target=lambda: self.serve_forever(0.05), daemon=True).start()

    def stop(self) -> None:
        """Breaks all connections, too."""
        if not self.is_stopped.is_set():
            self.is_stopped.set()
            self.shutdown()
            self.server_close()

    def handle_error(self, *_: object) -> None:
        pass
