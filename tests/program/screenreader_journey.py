#!/usr/bin/python3
"""Sets up a show as a screen reader does: through the accessibility bus alone.

usage: screenreader_journey.py PROGRAM

The program runs with two simulated speakers on a display and a bus of its own. Beside each step the
script checks what the bus says of it: one event for a change, one announcement of what happens, nothing
of hidden pages, and few events while music plays. Ends with 77, "skipped", where display, bus or their packages are missing.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time
import warnings

SKIPPED = 77
LIMIT = 60  # seconds that a state may take to come, on a loaded machine


def skip(reason):
    print("skipped:", reason)
    sys.exit(SKIPPED)


def on_own_bus():
    """Starts this script again on a display and a session bus of its own."""
    for tool in ("Xvfb", "dbus-run-session"):
        if not shutil.which(tool):
            skip(tool + " is not installed")
    read, write = os.pipe()
    # Without -noreset the server starts anew when its only client leaves, and drops whoever comes meanwhile.
    screen = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write), "-screen", "0", "1600x1200x24", "-nolisten", "tcp", "-noreset"],
        pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    try:
        with os.fdopen(read) as numbers, tempfile.TemporaryDirectory() as folder:
            number = numbers.readline().strip()
            if not number:
                skip("no display can be made")
            environment = dict(os.environ, DISPLAY=":" + number, XDG_RUNTIME_DIR=folder, HOME=folder,
                               JOURNEY_BUS="own")
            return subprocess.call(["dbus-run-session", "--", sys.executable] + sys.argv, env=environment)
    finally:
        screen.terminate()
        screen.wait()


try:
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib
    warnings.filterwarnings("ignore", category=DeprecationWarning)
except (ImportError, ValueError) as missing:
    skip(missing)


def listen(seconds):
    """Lets events come."""
    loop = GLib.MainLoop()
    GLib.timeout_add(round(seconds * 1000), loop.quit)
    loop.run()


def children(parent):
    found = [parent.get_child_at_index(i) for i in range(parent.get_child_count())]
    return [child for child in found if child]


def role_of(target):
    """Its name of the bus of Debian 12; later ones call a push button a button."""
    name = target.get_role_name()
    return "push button" if name == "button" else name


def has(target, state):
    return target.get_state_set().contains(state)


def search(parent, role, name):
    """Of what is on the screen."""
    for child in children(parent):
        if has(child, Atspi.StateType.SHOWING):
            if role_of(child) == role and child.get_name() == name:
                return child
            found = search(child, role, name)
            if found:
                return found
    return None


def do(target, action):
    names = [Atspi.Action.get_action_name(target, i) for i in range(Atspi.Action.get_n_actions(target))]
    assert Atspi.Action.do_action(target, names.index(action)), names


class Reader:
    """A screen reader: finds objects by role and name, acts on them, and hears events."""

    CHANGES = ("object:property-change:accessible-value", "object:state-changed:checked",
               "object:state-changed:selected")
    CHANGE_OF_LIST = ("object:property-change:accessible-name",)  # the toolkit tells it so
    OTHERS = ("object:property-change:accessible-name", "object:property-change:accessible-description",
              "object:state-changed", "object:children-changed", "object:bounds-changed", "object:text-changed",
              "object:visible-data-changed", "object:active-descendant-changed")

    def __init__(self):
        self.heard = []
        self.changes = []  # role and name of what has told a change, of this step
        self.steps = []  # those of all steps
        self.hidden = []  # what has told a change and is not on the screen
        self.announced = []
        self.said = []  # announcements that are waited for
        self.listener = Atspi.EventListener.new(self.hear)
        for kind in self.CHANGES + self.OTHERS:
            self.listener.register(kind)
        self.window = self.until("the window", self.find_window)
        self.until("an active window", lambda: has(self.window, Atspi.StateType.ACTIVE))

    def find_window(self):
        for program in children(Atspi.get_desktop(0)):
            program.set_cache_mask(Atspi.Cache.NONE)
            for window in children(program):
                if window.get_role() == Atspi.Role.FRAME:
                    return window
        return None

    def hear(self, event):
        try:
            role, name = role_of(event.source), event.source.get_name()
            is_shown = has(event.source, Atspi.StateType.SHOWING)
        except GLib.Error:  # it has gone meanwhile
            return
        self.heard.append((event.type, role, name))
        if role == "notification":
            if event.type == "object:state-changed:showing" and event.detail1:
                self.announced.append(name)
        elif event.type in (self.CHANGE_OF_LIST if role == "combo box" else self.CHANGES):
            self.changes.append((role, name))
            if not is_shown:
                self.hidden.append((event.type, role, name))

    def until(self, what, condition):
        """Waits until the condition gives something, and returns that."""
        end = time.monotonic() + LIMIT
        while True:
            found = condition()
            if found:
                return found
            if time.monotonic() > end:
                raise AssertionError(f"{what} does not come; announced: {self.announced}; "
                                     f"heard: {self.heard[-20:]}")
            listen(0.02)

    def find(self, role, name):
        return self.until(f"{role} {name}", lambda: search(self.window, role, name))

    def change(self, role, name, make, then):
        """Makes a change, waits for what follows from it, and for the event of it."""
        target = self.find(role, name)
        self.changes = []
        self.steps.append(((role, name), self.changes))
        make(target)
        self.until(f"{name} in its new state", lambda: then(target))
        self.until(f"an event of {name}", lambda: (role, name) in self.changes)

    def turn(self, role, name, action, state):
        self.change(role, name, lambda target: do(target, action), lambda target: has(target, state))

    def set(self, role, name, number, text):
        self.change(role, name, lambda target: Atspi.Value.set_current_value(target, number),
                    lambda target: text in target.get_description())

    def press(self, name):
        do(self.find("push button", name), "Press")

    def says(self, text):
        self.said.append(text)
        self.until(f"the announcement {text}", lambda: self.times_said(text))

    def times_said(self, text):
        return sum(text in each for each in self.announced)

    def hear_music(self, seconds=2, most=20):
        self.heard = []
        listen(seconds)
        assert len(self.heard) < most * seconds, f"too many events: {self.heard}"

    def keys(self, *codes):
        """Holds all of these keys of the keyboard together."""
        for kind, order in ((Atspi.KeySynthType.PRESS, codes), (Atspi.KeySynthType.RELEASE, codes[::-1])):
            for code in order:
                Atspi.generate_keyboard_event(code, None, kind)


CONTROL, ALT, RETURN = 37, 64, 36  # key codes of X


def set_up_a_show(reader):
    checked, selected = Atspi.StateType.CHECKED, Atspi.StateType.SELECTED
    reader.press("CONECTAR")
    reader.says("100%")
    second = reader.until("the second chip", lambda: next(
        (chip for chip in children(reader.find("panel", "Caixas").get_child_at_index(0))
         if chip.get_name().startswith("02 ")), None)).get_name()
    reader.turn("radio button", second, "Toggle", checked)
    reader.says("Caixa " + second)
    reader.set("dial", "Graves", 5, "+5.0 dB")
    reader.turn("check box", "Mudo, Entrada", "Toggle", checked)
    reader.turn("page tab", "DINÂMICA", "Press", selected)
    reader.turn("radio button", "Saída 2", "Toggle", checked)
    reader.says("Saída 2")
    reader.turn("page tab", "DELAY", "Press", selected)
    reader.set("slider", "Saída 2", 2.5, "2.50 ms, 85.8 cm")

    logo = reader.find("image", "CORVANE")
    Atspi.Component.grab_focus(logo)
    reader.until("the focus on the logo", lambda: has(logo, Atspi.StateType.FOCUSED))
    reader.keys(CONTROL, ALT, RETURN)
    reader.says("Modo técnico")
    reader.turn("page tab", "OUT 2", "Press", selected)
    reader.set("spin button", "Saída 2, Banda 3, frequência", 160, "160 Hz")
    reader.set("spin button", "Saída 2, Banda 3, Q", 1.8, "1.80")
    reader.set("spin button", "Saída 2, Banda 3, ganho", 4, "+4.0 dB")
    graph = reader.find("chart", "Saída 2, Equalizador")
    band = graph.get_child_at_index(2)
    assert band.get_name() == "Banda 3" and "160 Hz, +4.0 dB, Q 1.8" in band.get_description(), \
        (band.get_name(), band.get_description())
    reader.change("combo box", "Saída 2, HPF, inclinação",
                  lambda slope: do(slope.get_child_at_index(5), "Press"),
                  lambda slope: slope.get_description() == slope.get_child_at_index(5).get_name())

    reader.turn("page tab", "MAIN", "Press", selected)
    Atspi.EditableText.set_text_contents(reader.find("text", "Nome do preset"), "Igreja")
    reader.press("SALVAR")
    reader.says("salvo")
    reader.until("CARREGAR to be enabled", lambda: has(reader.find("push button", "CARREGAR"),
                                                       Atspi.StateType.ENABLED))
    reader.press("CARREGAR")
    reader.says("carregado")
    reader.hear_music()
    reader.press("MODO TÉCNICO")
    reader.says("Modo simples")
    reader.hear_music()
    reader.press("DESCONECTAR")
    reader.says("Desconectado")

    assert not reader.hidden, f"events of hidden pages: {reader.hidden}"
    for text in reader.said:
        assert reader.times_said(text) == 1, f"not said once: {text}; {reader.announced}"
    for target, changes in reader.steps:
        assert changes.count(target) == 1, f"not one event of {target}: {changes}"


if __name__ == "__main__":
    if os.environ.get("JOURNEY_BUS") != "own":
        sys.exit(on_own_bus())
    environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb")
    program = subprocess.Popen([sys.argv[1], "--demo", "2"], env=environment)
    try:
        set_up_a_show(Reader())
    finally:
        program.terminate()
        program.wait()
