"""A session manager for one client, with the X session management protocol. Prints its address, then
reads commands from its standard input: "log out", which lets the client ask the user; "log out now",
which does not; "log out with others", which waits for another client after this one has agreed;
"cancel", by which the other client cancels, and "end", by which it agrees. Prints a line for each
event of the client.
"""

import ctypes
import os
import select
from ctypes import POINTER, byref, c_char_p, c_int, c_ulong, c_void_p

ICE = ctypes.CDLL("libICE.so.6")
SM = ctypes.CDLL("libSM.so.6")
LIBC = ctypes.CDLL(None)

SAVE_LOCAL, SAVE_BOTH = 1, 2
ASK_NOTHING, ASK_ANYTHING = 0, 2
ACCEPTED, PENDING = 1, 0
EVERY_CALLBACK = (1 << 10) - 1

for function in (ICE.IceAcceptConnection, ICE.IceComposeNetworkIdList, SM.SmsClientHostName,
                 SM.SmsGenerateClientID):
    function.restype = c_void_p
NewClient = ctypes.CFUNCTYPE(c_int, c_void_p, c_void_p, POINTER(c_ulong), c_void_p, c_void_p)
Admission = ctypes.CFUNCTYPE(c_int, c_char_p)
Registration = ctypes.CFUNCTYPE(c_int, c_void_p, c_void_p, c_void_p)
Event = ctypes.CFUNCTYPE(None, c_void_p, c_void_p)
NumberEvent = ctypes.CFUNCTYPE(None, c_void_p, c_void_p, c_int)
ListEvent = ctypes.CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_void_p)
SaveRequest = ctypes.CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_int, c_int, c_int, c_int)


class Callbacks(ctypes.Structure):
    """The struct SmsCallbacks: functions with their client data."""

    _fields_ = [field for name, kind in (
        ("register", Registration), ("interact_request", NumberEvent),
        ("interact_done", NumberEvent), ("save_request", SaveRequest), ("phase_two", Event),
        ("save_done", NumberEvent), ("close", ListEvent), ("set_properties", ListEvent),
        ("delete_properties", ListEvent), ("get_properties", Event))
        for field in ((name, kind), (name + "_data", c_void_p))]


def report(event):
    print(event, flush=True)


class Manager:
    def __init__(self):
        self.client = None
        self.connections = []
        self.is_logging_out = False
        self.has_others = False
        # libSM keeps pointers to them.
        self.callbacks = Callbacks(
            register=Registration(self.register), interact_request=NumberEvent(self.ask),
            interact_done=NumberEvent(self.asked),
            save_request=SaveRequest(lambda *_: None), phase_two=Event(lambda *_: None),
            save_done=NumberEvent(self.saved), close=ListEvent(self.closed),
            set_properties=ListEvent(lambda *_: None),
            delete_properties=ListEvent(lambda *_: None), get_properties=Event(lambda *_: None))
        self.new_client = NewClient(self.accept_client)
        self.admission = Admission(lambda host: 1)
        error = ctypes.create_string_buffer(256)
        assert SM.SmsInitialize(b"velun tests", b"1", self.new_client, None, self.admission,
                                len(error), error), error.value
        ICE._IceTransNoListen(b"tcp")
        count, self.listeners = c_int(), POINTER(c_void_p)()
        assert ICE.IceListenForConnections(byref(count), byref(self.listeners), len(error),
                                           error), error.value
        self.listeners = [c_void_p(self.listeners[i]) for i in range(count.value)]
        for listener in self.listeners:
            ICE.IceSetHostBasedAuthProc(listener, self.admission)
        addresses = (c_void_p * len(self.listeners))(*(l.value for l in self.listeners))
        report(ctypes.string_at(ICE.IceComposeNetworkIdList(len(self.listeners), addresses)).decode())

    def accept_client(self, _, __, mask, callbacks, ___):
        mask[0] = EVERY_CALLBACK
        ctypes.memmove(callbacks, byref(self.callbacks), ctypes.sizeof(self.callbacks))
        return 1

    def register(self, client, _, previous):
        self.client = c_void_p(client)
        if previous:
            LIBC.free(c_void_p(previous))
        SM.SmsRegisterClientReply(self.client, c_void_p(SM.SmsGenerateClientID(self.client)))
        # The protocol requires this for every new client.
        SM.SmsSaveYourself(self.client, SAVE_LOCAL, 0, ASK_NOTHING, 0)
        return 1

    def ask(self, *_):
        report("asks")
        SM.SmsInteract(self.client)

    def asked(self, _, __, is_cancelled):
        if is_cancelled:
            report("cancelled")
            self.is_logging_out = False
            SM.SmsShutdownCancelled(self.client)

    def saved(self, _, __, is_saved):
        if self.is_logging_out:
            report("saved")
            if not self.has_others:
                SM.SmsDie(self.client)
        elif is_saved:
            SM.SmsSaveComplete(self.client)
            report("ready")

    def closed(self, client, _, count, reasons):
        SM.SmFreeReasons(count, c_void_p(reasons))
        SM.SmsCleanUp(c_void_p(client))
        self.client = None
        report("gone")

    def log_out(self, style, has_others=False):
        self.is_logging_out = True
        self.has_others = has_others
        SM.SmsSaveYourself(self.client, SAVE_BOTH, 1, style, 0)

    def accept(self, listener):
        status = c_int()
        connection = c_void_p(ICE.IceAcceptConnection(listener, byref(status)))
        while ICE.IceConnectionStatus(connection) == PENDING:
            ICE.IceProcessMessages(connection, None, None)
        if ICE.IceConnectionStatus(connection) == ACCEPTED:
            self.connections.append(connection)

    def run(self):
        listening = {ICE.IceGetListenConnectionNumber(l): l for l in self.listeners}
        while True:
            talking = {ICE.IceConnectionNumber(c): c for c in self.connections}
            ready, _, _ = select.select([0, *listening, *talking], [], [])
            for number in ready:
                if number in listening:
                    self.accept(listening[number])
                elif number in talking:
                    if ICE.IceProcessMessages(talking[number], None, None) != 0:
                        self.connections.remove(talking[number])
                elif not self.execute(os.read(0, 100).decode().strip()):
                    return

    def execute(self, command):
        if command == "log out":
            self.log_out(ASK_ANYTHING)
        elif command == "log out now":
            self.log_out(ASK_NOTHING)
        elif command == "log out with others":
            self.log_out(ASK_ANYTHING, has_others=True)
        elif command == "cancel":
            self.is_logging_out = False
            SM.SmsShutdownCancelled(self.client)
        elif command == "end":
            SM.SmsDie(self.client)
        return bool(command)


Manager().run()
