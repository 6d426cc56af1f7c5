"""Makes the one file that is passed on: make_page.py PAGE OUTPUT

Puts the style and the scripts that PAGE names into it, with a content policy that allows these and nothing else.
"""
import base64
import hashlib
import re
import sys
from pathlib import Path

STYLE = re.compile(r'<link rel="stylesheet" href="([^"]*)">')
SCRIPT = re.compile(r'<script src="([^"]*)"></script>')


def main(page, output):
    page = Path(page)
    hashes = {"style": [], "script": []}

    def inlined(kind):
        def replacement(found):
            content = "\n" + (page.parent / found[1]).read_text(encoding="utf-8")
            assert f"</{kind}" not in content, f"{found[1]} would end its element"
            digest = base64.b64encode(hashlib.sha256(content.encode()).digest()).decode()
            hashes[kind].append(f"'sha256-{digest}'")
            return f"<{kind}>{content}</{kind}>"
        return replacement

    text = STYLE.sub(inlined("style"), page.read_text(encoding="utf-8"))
    text = SCRIPT.sub(inlined("script"), text)
    policy = "; ".join(["default-src 'none'", *(f"{kind}-src {' '.join(found)}" for kind, found in hashes.items()),
                        "base-uri 'none'", "form-action 'none'"])
    mark = '<meta charset="utf-8">\n'
    assert text.count(mark) == 1
    text = text.replace(mark, f'{mark}<meta http-equiv="Content-Security-Policy" content="{policy}">\n')
    Path(output).write_text(text, encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
