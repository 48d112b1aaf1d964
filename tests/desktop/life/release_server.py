"""A web server with a certificate, for the files of a folder: release_server.py PORT FOLDER
CERTIFICATE KEY. Prints a line when it listens.
"""

import functools
import http.server
import ssl
import sys

port, folder, certificate, key = sys.argv[1:]
handler = functools.partial(http.server.SimpleHTTPRequestHandler, directory=folder)
server = http.server.HTTPServer(("127.0.0.1", int(port)), handler)
context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(certificate, key)
server.socket = context.wrap_socket(server.socket, server_side=True)
print("ready", flush=True)
server.serve_forever()
