"""Which names the MSI takes for URLSCHEME, in the installer's language of conditions.

That language knows no classes of characters, and code of our own is not to run with the installer's rights: so whatever
is not allowed is listed. The list has every character of the German Windows code page; letters of other scripts pass, and
no browser would ever call such a name.
"""
# Names that belong to the system, to browsers or to other programs' texts, and the folders of the classes' registry.
GENERAL = ("about", "application", "blob", "chrome", "cid", "content", "data", "dns", "edge", "feed", "file", "filesystem",
           "ftp", "ftps", "geo", "git", "http", "https", "imap", "intent", "irc", "jar", "java", "javascript", "ldap", "ldaps",
           "local", "magnet", "mailto", "microsoft-edge", "mid", "mms", "news", "nfs", "nntp", "pop", "res", "rlogin", "rtsp",
           "search-ms", "sftp", "shell", "sip", "sips", "smb", "sms", "ssh", "tel", "telnet", "urn", "vbscript", "view-source",
           "vnd.ms.radio", "webcal", "ws", "wss", "xmpp",
           "appid", "applications", "clsid", "directory", "drive", "extensions", "folder", "installer", "interface", "mime",
           "packagedcom", "protocols", "typelib", "unknown", "wow6432node")
# Those that begin so are the system's own.
GENERAL_BEGINNINGS = ("ms-",)

LETTERS = "abcdefghijklmnopqrstuvwxyz"
NOT_FIRST = "0123456789+-."
ALLOWED = LETTERS + LETTERS.upper() + NOT_FIRST
QUOTE = "QUOTE"  # the property that holds a quote, which no literal can

LONGEST_CONDITION = 255

NO_SCHEME = ("URLSCHEME=[URLSCHEME] geht nicht: Der Name eines Schemas beginnt mit einem Buchstaben von a bis z und hat "
             "sonst nur solche Buchstaben, Ziffern, Plus, Minus und Punkt.")
TOO_GENERAL = "URLSCHEME=[URLSCHEME] geht nicht: Dieses Schema gehört allen. Nehmen Sie einen eigenen Namen."
TAKEN = "URLSCHEME=[URLSCHEME] geht nicht: Dieser Name ist auf diesem Rechner schon vergeben."
FIXED = ("URLSCHEME=[URLSCHEME] geht nicht: Das Schema lässt sich nur beim Installieren und beim Aktualisieren wählen. "
         "Entfernen Sie Quillet vorher.")


def forbidden_characters():
    every = bytes(range(0x20, 0x100)).decode("cp1252", errors="ignore")
    return [character for character in every if character.isprintable() or character == "\xa0"
            if character not in ALLOWED]


def literal(character):
    return QUOTE if character == '"' else f'"{character}"'


def unless(terms):
    """Conditions, none too long, that hold together when none of the terms does."""
    line = ""
    for term in terms:
        longer = f"{line} OR {term}" if line else term
        if line and len(f"Installed OR NOT ({longer})") > LONGEST_CONDITION:
            yield f"Installed OR NOT ({line})"
            longer = term
        line = longer
    yield f"Installed OR NOT ({line})"


def conditions():
    """Yields (condition, sentence for when it does not hold). Without URLSCHEME, all hold."""
    wrong = [f"URLSCHEME >< {literal(character)}" for character in forbidden_characters()]
    wrong += [f'URLSCHEME << "{character}"' for character in NOT_FIRST]
    yield from ((condition, NO_SCHEME) for condition in unless(wrong))
    general = [f'URLSCHEME ~= "{name}"' for name in GENERAL]
    general += [f'URLSCHEME ~<< "{beginning}"' for beginning in GENERAL_BEGINNINGS]
    yield from ((condition, TOO_GENERAL) for condition in unless(general))
    yield "NOT URLSCHEME OR NOT TAKENSCHEME OR URLSCHEME ~= REMEMBEREDSCHEME", TAKEN
    yield "NOT Installed OR NOT URLSCHEME OR URLSCHEME ~= REMEMBEREDSCHEME", FIXED
