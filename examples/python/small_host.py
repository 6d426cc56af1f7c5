"""A host in Python (ctypes, no package): takes texts (UTF-16), prints them, and answers with 2.

    python small_host.py
    quillet.exe -kla=PythonHost -copydata="Vorgang 4711"

Not tried here on Windows; its message code runs in the tests.
"""
import ctypes
from ctypes import c_int, c_size_t, c_ssize_t, c_uint, c_void_p, c_wchar_p

WM_DESTROY, WM_COPYDATA, WM_USER = 0x0002, 0x004A, 0x0400
WS_OVERLAPPEDWINDOW, SHOW_NORMAL = 0x00CF0000, 1
ANSWER = 2
LONGEST_TEXT = 2000  # bytes; more is refused, since any web page may be the sender

WINDOW_PROC = getattr(ctypes, "WINFUNCTYPE", ctypes.CFUNCTYPE)(c_ssize_t, c_void_p, c_uint, c_size_t, c_ssize_t)


class CopyData(ctypes.Structure):
    _fields_ = [("dwData", c_size_t), ("cbData", c_uint), ("lpData", c_void_p)]


class WindowClass(ctypes.Structure):
    _fields_ = [("style", c_uint), ("procedure", WINDOW_PROC), ("classExtra", c_int), ("windowExtra", c_int),
                ("instance", c_void_p), ("icon", c_void_p), ("cursor", c_void_p), ("background", c_void_p),
                ("menuName", c_wchar_p), ("className", c_wchar_p)]


class Message(ctypes.Structure):
    _fields_ = [("window", c_void_p), ("message", c_uint), ("wParam", c_size_t), ("lParam", c_ssize_t),
                ("time", c_uint), ("x", c_int), ("y", c_int), ("reserved", c_uint)]


def text_of(data):
    """The text of a COPYDATASTRUCT, or None when it is none. Copied: there is no terminator, and it is gone on return."""
    if data.cbData % 2 or data.cbData > LONGEST_TEXT:
        return None
    try:
        return ctypes.string_at(data.lpData, data.cbData).decode("utf-16-le") if data.cbData else ""
    except UnicodeDecodeError:
        return None


def handle(user32, window, message, w_param, l_param):
    """What the window does with a message; user32 is the system's library."""
    if message == WM_COPYDATA:
        text = text_of(CopyData.from_address(l_param))
        if text is None:
            return 0  # refused: the caller sees -3
        print(ascii(text), flush=True)
        name = ctypes.create_unicode_buffer(16)
        user32.GetClassNameW(c_void_p(w_param), name, 16)
        if name.value == "#32770":  # the dialog that waits; the handle may be any number; post to it, never send
            user32.PostMessageW(c_void_p(w_param), WM_USER + ANSWER, 0, 0)
        return 1
    if message == WM_DESTROY:
        user32.PostQuitMessage(0)
        return 0
    return user32.DefWindowProcW(c_void_p(window), message, c_size_t(w_param), c_ssize_t(l_param))


def main():
    user32 = ctypes.windll.user32
    user32.DefWindowProcW.restype = c_ssize_t
    user32.CreateWindowExW.restype = c_void_p
    procedure = WINDOW_PROC(lambda *message: handle(user32, *message))  # must live as long as the window
    user32.RegisterClassW(ctypes.byref(WindowClass(procedure=procedure, className="PythonHost")))
    window = user32.CreateWindowExW(0, "PythonHost", "Python-Host", WS_OVERLAPPEDWINDOW, 100, 100, 480, 200,
                                    None, None, None, None)
    user32.ShowWindow(c_void_p(window), SHOW_NORMAL)
    message = Message()
    while user32.GetMessageW(ctypes.byref(message), None, 0, 0) > 0:
        user32.DispatchMessageW(ctypes.byref(message))


if __name__ == "__main__":
    main()
