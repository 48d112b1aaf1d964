"""A shared screen as programs see it through PipeWire: a video stream with a consumer."""

import json
from contextlib import contextmanager

from private_desktop import end

NAME = "velun-cast"


@contextmanager
def stand_in(session):
    """A stream like those of the portals for wlroots, but with a test picture."""
    stream = session.start(["gst-launch-1.0", "-q", "videotestsrc", "is-live=true", "!",
                            "video/x-raw,format=BGRx,width=320,height=240,framerate=10/1", "!",
                            "pipewiresink", "mode=provide",
                            f"stream-properties=properties,node.name={NAME},media.class=Video/Source"],
                           log="cast")
    try:
        with consumer(session, lambda properties: properties.get("node.name") == NAME):
            yield
    finally:
        end(stream)


@contextmanager
def consumer(session, is_wanted):
    """A program that shows the first stream whose properties are the wanted ones."""
    node = session.wait("the stream of the cast", lambda: _node(session, is_wanted))
    program = session.start(["gst-launch-1.0", "-q", "pipewiresrc", f"path={node}", "!",
                             "videoconvert", "!", "fakesink"], log="cast-consumer")
    try:
        yield
    finally:
        end(program)


def _node(session, is_wanted):
    # A change meanwhile is a second text.
    things, _ = json.JSONDecoder().raw_decode(session.run("pw-dump") or "[]")
    for thing in things:
        properties = (thing.get("info") or {}).get("props") or {}
        if thing["type"] == "PipeWire:Interface:Node" and is_wanted(properties):
            return thing["id"]
    return None
