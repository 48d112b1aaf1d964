"""Controls programs on a private desktop through the accessibility bus, as assistive technology does.
It uses D-Bus directly, because libatspi supports only one accessibility bus per process.

Needs the system's Python with python3-dbus. Properties are read again at each access. An action does
not wait for its effect, which may be a dialog that stays open: wait for what it shows.
"""

import dbus
import dbus.lowlevel

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
LAUNCHER_NAME = "org.a11y.Bus"
ACCESSIBLE = "org.a11y.atspi.Accessible"
ACTION = "org.a11y.atspi.Action"
COMPONENT = "org.a11y.atspi.Component"
EDITABLE_TEXT = "org.a11y.atspi.EditableText"
OBJECT_EVENT = "org.a11y.atspi.Event.Object"
PROPERTIES = "org.freedesktop.DBus.Properties"
REGISTRY = "org.a11y.atspi.Registry"
ROOT = "/org/a11y/atspi/accessible/root"
TEXT = "org.a11y.atspi.Text"
VALUE = "org.a11y.atspi.Value"

LABELLED_BY = 2  # a kind of relation
SCREEN = 0  # what positions count from
# In the order of their bits.
STATES = ("invalid active armed busy checked collapsed defunct editable enabled expandable expanded "
          "focusable focused has-tooltip horizontal iconified modal multi-line multiselectable "
          "opaque pressed resizable selectable selected sensitive showing single-line stale "
          "transient vertical visible manages-descendants indeterminate required truncated "
          "animated invalid-entry supports-autocompletion selectable-text is-default visited "
          "checkable has-popup read-only").split()


class Accessibility:
    """The accessibility bus of a desktop. Programs that are started later appear on it."""

    def __init__(self, desktop):
        self.desktop = desktop
        desktop.start([LAUNCHER, "--launch-immediately", "--a11y=1"], log="accessibility")
        self._session = dbus.bus.BusConnection(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
        # A call before that would start a second launcher, which leaves accessibility off.
        desktop.wait("the accessibility bus", lambda: self._session.name_has_owner(LAUNCHER_NAME))
        self._address = str(self._session.call_blocking(
            LAUNCHER_NAME, "/org/a11y/bus", LAUNCHER_NAME, "GetAddress", "", []))
        self.bus = dbus.bus.BusConnection(self._address)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.bus.close()
        self._session.close()

    def application(self, name):
        """Waits for the program of this name."""
        return self.desktop.wait(f"the accessible program {name}", lambda: next(
            (program for program in self.applications() if program.name == name), None))

    def watch(self, kind, signal):
        """Asks programs to tell of a kind of event from now on; the file in which what they tell
        appears, one signal of the bus after the other.
        """
        self.bus.call_blocking(REGISTRY, "/org/a11y/atspi/registry", REGISTRY, "RegisterEvent", "s",
                               [kind])
        log = f"events-{signal}"
        self.desktop.start(["dbus-monitor", "--address", self._address,
                            f"type='signal',interface='{OBJECT_EVENT}',member='{signal}'"], log=log)
        path = self.desktop.log_path(log)
        self.desktop.wait("the watch for events", path.read_text)
        return path

    def applications(self):
        return Node(self, REGISTRY, ROOT).children


class Node:
    """An accessible object. One that was destroyed has no name, children or states."""

    def __init__(self, accessibility, program, path):
        self._accessibility = accessibility
        self._program = program
        self._path = path

    def __eq__(self, other):
        return isinstance(other, Node) and \
            (self._program, self._path) == (other._program, other._path)

    def __hash__(self):
        return hash((self._program, self._path))

    def __repr__(self):
        return f"<{self.role} “{self.name}” {' '.join(sorted(self.states))}>"

    @property
    def name(self):
        return str(self._property(ACCESSIBLE, "Name", ""))

    @property
    def description(self):
        return str(self._property(ACCESSIBLE, "Description", ""))

    @property
    def role(self):
        """The name of its AT-SPI role, for example "push button"."""
        return str(self._call(ACCESSIBLE, "GetRoleName", default=""))

    @property
    def states(self):
        """The names of the states that are set."""
        low, high = self._call(ACCESSIBLE, "GetState", default=(0, 0))
        bits = int(low) | int(high) << 32
        return {name for number, name in enumerate(STATES) if bits >> number & 1}

    @property
    def children(self):
        return [Node(self._accessibility, str(program), str(path))
                for program, path in self._call(ACCESSIBLE, "GetChildren", default=())]

    @property
    def interfaces(self):
        return {str(name) for name in self._call(ACCESSIBLE, "GetInterfaces", default=())}

    @property
    def actions(self):
        """The names of the actions, for example "Press", "Toggle" and "SetFocus"."""
        return [str(name) for name, *_ in self._call(ACTION, "GetActions", default=())]

    @property
    def label(self):
        """The name of its label; empty if it has none."""
        for kind, targets in self._call(ACCESSIBLE, "GetRelationSet", default=()):
            if kind == LABELLED_BY:
                return " ".join(Node(self._accessibility, str(program), str(path)).name
                                for program, path in targets)
        return ""

    @property
    def text(self):
        """The whole text of a text field or view."""
        return str(self._call(TEXT, "GetText", "ii", 0, -1, default=""))

    @property
    def extents(self):
        """Left, top, width and height on the screen, in pixels."""
        return tuple(int(number) for number in
                     self._call(COMPONENT, "GetExtents", "u", SCREEN, default=(0, 0, 0, 0)))

    def character_extents(self, offset):
        """Like `extents`, for one character of its text."""
        return tuple(int(number) for number in self._call(
            TEXT, "GetCharacterExtents", "iu", offset, SCREEN, default=(0, 0, 0, 0)))

    def told(self, events, kind):
        """The number of recorded events of a kind for this object."""
        return sum(f" path={self._path};" in event and f'string "{kind}"' in event
                   for event in events.read_text().split("signal ")[1:])

    @property
    def exists(self):
        return bool(self.states)

    @property
    def is_showing(self):
        return "showing" in self.states

    @property
    def is_enabled(self):
        return "enabled" in self.states

    @property
    def is_checked(self):
        return "checked" in self.states

    @property
    def is_focused(self):
        return "focused" in self.states

    def walk(self):
        """This object and everything below it, parents first."""
        yield self
        for child in self.children:
            yield from child.walk()

    def find_all(self, role=None, name=None, label=None):
        """All descendants with this role, name and label, in tree order."""
        return [node for node in self.walk()
                if (role is None or node.role == role) and (name is None or node.name == name)
                and (label is None or node.label == label)]

    def find(self, role=None, name=None, label=None):
        """The first matching descendant; none if there is none."""
        return next(iter(self.find_all(role, name, label)), None)

    def wait_for(self, role=None, name=None, label=None):
        """Waits for a visible matching descendant, and returns the first."""
        what = " ".join(f"{key} “{value}”" for key, value in
                        (("role", role), ("name", name), ("label", label)) if value is not None)
        try:
            return self._accessibility.desktop.wait(what, lambda: next(
                (node for node in self.find_all(role, name, label) if node.is_showing), None))
        except AssertionError as error:
            raise AssertionError(f"{error} in\n{self.tree()}") from None

    def do(self, action):
        """Performs an action by its name."""
        assert action in self.actions, f"{self} has only {self.actions}"
        self._send(ACTION, "DoAction", "i", self.actions.index(action))

    def press(self):
        self.do("Press")

    def toggle(self):
        self.do("Toggle")

    def select(self):
        """Selects an item of a list."""
        if "selected" not in self.states:
            self.do("Toggle")

    def choose(self, title):
        """Opens a combo box and selects an entry with the keyboard."""
        self.do("ShowMenu")
        desktop = self._accessibility.desktop
        # The rows exist even while it is closed, so check its state.
        desktop.wait("the open chooser", lambda: "expanded" in self.states)
        titles = [item.name for item in self.find_all("list item")]
        desktop.run("xdotool", "key", "Home", *["Down"] * titles.index(title), "Return")
        desktop.wait(f"“{title}” to be chosen",
                     lambda: self.name == title and "expanded" not in self.states)

    def entries(self):
        """The entries of a combo box."""
        return [item.name for item in self.find_all("list item")]

    def set_text(self, text):
        self._send(EDITABLE_TEXT, "SetTextContents", "s", text)

    def set_value(self, value):
        """Moves a slider."""
        self._send(PROPERTIES, "Set", "ssv", VALUE, "CurrentValue", float(value))

    def click(self, button=1):
        """Clicks its center with the pointer."""
        left, top, width, height = self.extents
        self._accessibility.desktop.run("xdotool", "mousemove", left + width // 2,
                                        top + height // 2, "click", button)

    def tree(self, depth=0):
        """The object and its descendants as text, for messages and for writing tests."""
        text = f" = {self.text!r}" if TEXT in self.interfaces else ""
        label = f" ({self.label})" if self.label else ""
        line = "  " * depth + f"{self.role} “{self.name}”{label}{text}: {' '.join(sorted(self.states))}"
        return "\n".join([line, *(child.tree(depth + 1) for child in self.children)])

    def _property(self, interface, name, default):
        return self._call(PROPERTIES, "Get", "ss", interface, name, default=default)

    def _call(self, interface, method, signature="", *arguments, default):
        try:
            return self._accessibility.bus.call_blocking(
                self._program, self._path, interface, method, signature, arguments, timeout=30)
        except dbus.DBusException:
            return default

    def _send(self, interface, method, signature, *arguments):
        message = dbus.lowlevel.MethodCallMessage(self._program, self._path, interface, method)
        message.append(*arguments, signature=signature)
        message.set_no_reply(True)
        self._accessibility.bus.send_message(message)
        self._accessibility.bus.flush()
