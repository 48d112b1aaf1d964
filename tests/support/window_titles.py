"""The titles of the program's windows."""

PANEL = "Velun Captions"
SETTINGS = "Velun Settings"
HISTORY = "Velun — Saved Sessions"
UPDATES = "Velun — Updates"
ABOUT = "About Velun"
EXPORT = "Export Session"
