# SPDX-License-Identifier: MIT
"""What a client needs that asks *IDN? through VXI-11: a port mapper and the core channel, both by
TCP."""

import socketserver
import struct
import threading

PORT_MAPPER = 100000
PORT_MAPPER_VERSION, GET_PORT = 2, 3
CREATE_LINK, DEVICE_WRITE, DEVICE_READ = 10, 11, 12
LARGEST_WRITE = 4096
READ_TO_ITS_END = 4
SUCCESS, VERSION_MISMATCH = 0, 2


def without_credentials(call):
    """The arguments of a call, after its two authentication fields."""
    at = 24
    for _ in range(2):
        at += 8 + (struct.unpack(">I", call[at + 4:at + 8])[0] + 3) // 4 * 4
    return call[at:]


class Connection(socketserver.StreamRequestHandler):
    def handle(self):
        while True:
            header = self.rfile.read(4)
            if len(header) < 4:
                return
            call = self.rfile.read(struct.unpack(">I", header)[0] & 0x7FFFFFFF)
            reply = call[:4] + struct.pack(">IIII", 1, 0, 0, 0) + self.answer(call)
            self.wfile.write(struct.pack(">I", 0x80000000 | len(reply)) + reply)

    def answer(self, call):
        program, version, procedure = struct.unpack(">III", call[12:24])
        if program != PORT_MAPPER:
            return struct.pack(">I", SUCCESS) + self.device(procedure, without_credentials(call))
        if version != PORT_MAPPER_VERSION:
            return struct.pack(">III", VERSION_MISMATCH, PORT_MAPPER_VERSION, PORT_MAPPER_VERSION)
        return struct.pack(">II", SUCCESS, self.server.device_port if procedure == GET_PORT else 0)

    def device(self, procedure, arguments):
        if procedure == CREATE_LINK:
            return struct.pack(">IIII", 0, 1, 0, LARGEST_WRITE)
        if procedure == DEVICE_WRITE:
            return struct.pack(">I", 0) + arguments[16:20]
        if procedure == DEVICE_READ:
            text = self.server.identity
            return struct.pack(">III", 0, READ_TO_ITS_END, len(text)) + text + b"\0" * (-len(text) % 4)
        return struct.pack(">I", 0)


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True
    request_queue_size = 100


def serve(address, port, identity):
    """Answers *IDN? at the address and port from threads of its own, and says where on port 111."""
    for listening in (111, port):
        server = Server((address, listening), Connection)
        server.device_port = port
        server.identity = identity.encode("latin-1")
        threading.Thread(target=server.serve_forever, daemon=True).start()
