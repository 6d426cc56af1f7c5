"""Sendet einen Text und wertet die Antwort aus.

Aufruf: python send_text.py "Vorgang 4711"
Hier nicht erprobt.

Sends a text and looks at the answer. Not tried here.
"""
import os
import re
import subprocess
import sys

program = os.environ.get("QUILLET") or r"C:\Program Files\Quillet\quillet.exe"


def signed(code):
    """Der Exitcode mit Vorzeichen: Python gibt ihn ohne, -2 also als 4294967294.

    The exit code with its sign, which Python leaves out.
    """
    return code - 2**32 if code >= 2**31 else code


def could_hold_a_switch(text):
    """Schalter gelten auch in den Anführungszeichen; leer ginge statt des Textes eine Benachrichtigung hinaus.

    Switches count inside the quotes, too; an empty text would send a notification instead.
    """
    return not text or re.search(r'"| -[A-Za-z?]', text) is not None


def send(text):
    # Eine einzige Zeichenkette, keine Liste: aus einer Liste macht Python
    # "-copydata=Vorgang 4711", und hinter dem Anführungszeichen gilt der Schalter nicht.
    # A single string, not a list: of a list Python makes "-copydata=Vorgang 4711", and behind the
    # quote the switch does not count.
    command_line = f'"{program}" -kla=QuilletBeispielHost -copydata="{text}"'
    return signed(subprocess.run(command_line).returncode)


if __name__ == "__main__":
    if could_hold_a_switch(sys.argv[1]):
        print("Nicht gesendet: der Text ist leer oder enthält, was als Schalter gelten könnte.")
        sys.exit(-101)
    answer = send(sys.argv[1])
    if answer >= 0:
        print(f"Der Host hat mit {answer} geantwortet.")
    else:
        failures = {-1: "Abgebrochen.", -2: "Der Host ist nicht gestartet."}
        print(failures.get(answer, "Der Host hat den Text nicht angenommen."))
    sys.exit(answer)
