"""Uses the real program as a person and a screen reader would: starts it twice, looks at it through
the accessibility tree, works it with mouse and keys, closes it twice."""

import os
import shutil
import signal
import struct
import subprocess
import sys
import time

import gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi
import pyatspi

CAPTION = "VB Quillon Tool Set Manager"
PROGRAM, SAMPLE = sys.argv[1:3]
OPENER = PROGRAM + "-open"
HOME = os.environ["HOME"]
failures = 0


def check(condition, text):
    global failures
    print(("ok    " if condition else "FAIL  ") + text, flush=True)
    if not condition:
        failures += 1


def until(found, text, seconds=15):
    """Polls until found() is something; what it is. The text tells what was waited for."""
    end = time.monotonic() + seconds
    while True:
        try:
            result = found()
        except Exception:  # an object that went away while it was looked at
            result = None
        if result:
            check(True, text)
            return result
        if time.monotonic() > end:
            check(False, text)
            finish()
        time.sleep(0.05)


def finish():
    for process in started:
        if process.poll() is None:
            process.kill()
            process.wait()
    errors.seek(0)
    printed = errors.read().strip()
    check(not printed, "no program printed a warning" + (": " + printed if printed else ""))
    print("%d checks failed" % failures if failures else "all checks passed")
    sys.exit(1 if failures else 0)


started = []
errors = open(os.path.join(HOME, "errors"), "w+")


def start(*arguments):
    process = subprocess.Popen([PROGRAM, *arguments], cwd=HOME, stderr=errors)
    started.append(process)
    return process


def xdo(*arguments):
    subprocess.run(["xdotool", *arguments], check=True)


def key(*keys):
    for one in keys:
        xdo("key", one)  # clearing modifiers would release a mouse button that is held


def has_keyboard():
    """True once the window manager has made the frame the active window."""
    named = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], capture_output=True)
    return named.stdout.decode().strip() == CAPTION


def application():
    for app in pyatspi.Registry.getDesktop(0):
        if app and app.name == CAPTION:
            # No loop runs here that would keep cached names and children up to date.
            app.set_cache_mask(Atspi.Cache.NONE)
            return app
    return None


def walk(node, depth=0):
    yield node
    if depth < 25:
        for child in node:
            if child:
                yield from walk(child, depth + 1)


def showing(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


def items(*roles):
    return [node for node in walk(application()) if node.getRole() in roles and showing(node)]


def cells():
    return items(pyatspi.ROLE_TABLE_CELL)


def rows():
    """The texts of the list's rows: name, position, location."""
    texts = [node.name for node in cells()]
    return [tuple(texts[i:i + 3]) for i in range(0, len(texts), 3)]


def names_in_order():
    return [row[0] for row in rows()]


def centre(node):
    # The tree counts in the program's own pixels, the mouse in the screen's.
    scale = float(os.environ.get("QT_SCALE_FACTOR", "1"))
    box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return int((box.x + box.width / 2) * scale), int((box.y + box.height / 2) * scale)


def row_centre(name):
    return centre(next(cell for cell in cells() if cell.name == name))


def drag(source, target):
    xdo("mousemove", str(source[0]), str(source[1]), "mousedown", "1")
    steps = 8
    for i in range(1, steps + 1):
        x = source[0] + (target[0] - source[0]) * i // steps
        y = source[1] + (target[1] - source[1]) * i // steps
        xdo("mousemove", str(x), str(y), "sleep", "0.03")


def frame_text(panel):
    labels = [node.name for node in walk(application())
              if node.getRole() == pyatspi.ROLE_LABEL and node.name]
    return panel in labels


INTERACTIVE = {
    pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_MENU_ITEM, pyatspi.ROLE_MENU,
    pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE, pyatspi.ROLE_TREE_TABLE, pyatspi.ROLE_LIST,
    pyatspi.ROLE_TEXT, pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_TOGGLE_BUTTON,
    pyatspi.ROLE_CHECK_MENU_ITEM, pyatspi.ROLE_RADIO_BUTTON,
}

until(lambda: subprocess.run(["xdotool", "get_num_desktops"], capture_output=True).returncode == 0,
      "a window manager runs", 60)
one = os.path.join(HOME, "One.bmt")
shutil.copy(SAMPLE, one)

# --- Starting, and what a screen reader finds ---
first = start("One.bmt")
until(application, "the program is in the accessibility tree")
until(lambda: len(rows()) >= 14, "the tools are listed")
check(rows()[0] == ("Notepad", "001", "C:\\WINDOWS\\NOTEPAD.EXE"),
      "a tool's three texts: %r" % (rows()[0],))
nameless = [node for node in walk(application())
            if node.getRole() in INTERACTIVE and showing(node) and not node.name]
check(not nameless, "every control has a name: %s" % [str(node) for node in nameless])
tips = {node.name for node in walk(application())}
for tip in ("Create a new tool set", "Open existing tool set", "Save the tool set",
            "Cut the selected tool", "Copy the selected tool", "Paste the selected tool",
            "Create a new tool", "Delete the selected tool", "Print the tool set",
            "Tool set properties", "Tool properties", "Edit macro", "List tools", "Tool details"):
    check(tip in tips, "button: " + tip)
for menu in ("File", "Edit", "View", "Window", "Help"):
    check(menu in tips, "menu: " + menu)
for item in ("Save Tool Set  As...", "Print Setup...", "Exit", "Delete", "Details",
             "Tile Horizontally", "About Tool  Set Manager..."):
    check(item in tips, "menu item: " + item)

second = subprocess.run([PROGRAM, "Two.bmt"], timeout=15, stderr=subprocess.PIPE, text=True)
check(second.returncode == 0 and "ToolSetManager-open" in second.stderr,
      "a second start ends with 0 and names the opener")
for command in PROGRAM, OPENER:
    for option, expected in ("--help", "Usage: "), ("--version", CAPTION + " 0"):
        told = subprocess.run([command, option], timeout=15, capture_output=True, text=True,
                              cwd="/", env={"PATH": os.environ["PATH"]})
        check(told.returncode == 0 and told.stdout.startswith(expected) and not told.stderr,
              option + " without a display")
check(sum(1 for app in pyatspi.Registry.getDesktop(0) if app and app.name == CAPTION) == 1,
      "and there is still one program")
check(len(names_in_order()) == 14, "which has opened nothing")

# The opener hands files over, several at once; it names those that do not exist.
two = os.path.join(HOME, "Zwei größere.bmt")
shutil.copy(SAMPLE, two)
opener = subprocess.run([OPENER, "none.bmt", "One.bmt", os.path.basename(two)], cwd=HOME,
                        timeout=15, capture_output=True, text=True)
check(opener.returncode == 1 and "none.bmt" in opener.stderr and "Zwei" not in opener.stderr,
      "the opener tells what is missing")
until(lambda: any(n.name == two for n in walk(application())), "the frame opens what it is handed")
key("ctrl+w")
until(lambda: all(n.name != two for n in walk(application())), "closed again")

# --- The mouse ---
header = next(node for node in walk(application()) if node.name == "Tool Description"
              and node.getRole() in (pyatspi.ROLE_COLUMN_HEADER, pyatspi.ROLE_TABLE_COLUMN_HEADER))
xdo("mousemove", *map(str, centre(header)), "click", "1")
until(lambda: names_in_order() == sorted(names_in_order(), key=str.lower), "sorted by name")

# The drag gate opens a second after the file was opened; until then a drag only selects.
def dragged():
    drag(row_centre("Paint"), row_centre("API Guide"))
    shown = frame_text("Move") and frame_text("Paint")
    xdo("mouseup", "1")
    return shown


until(dragged, "a drag shows \"Move\" and the tool's name in the status bar", 8)
until(lambda: names_in_order().index("Paint") == 10, "the tool stands where it was dropped")
check([row[1] for row in rows()] == ["%03d" % i for i in range(1, 15)], "positions have no gaps")
check(not frame_text("Move"), "the panels are empty again")

order = names_in_order()
for cancel in (["key", "Escape"], ["mousedown", "3", "mouseup", "3"]):
    drag(row_centre("Notepad"), row_centre("Separator"))
    until(lambda: frame_text("Notepad"), "a drag begins")
    xdo(*cancel, "mouseup", "1")
    until(lambda: not frame_text("Notepad") and names_in_order() == order,
          "a drag cancelled with %s changes nothing" % " ".join(cancel))

# --- The keyboard ---
xdo("mousemove", *map(str, row_centre("Project Notes")), "click", "1")
key("Home", "F2")
xdo("type", "Editor")
key("Return")
until(lambda: "Editor" in names_in_order(), "renamed in place")
key("ctrl+shift+Down")
until(lambda: names_in_order().index("Editor") == 1, "moved down by the keyboard")
key("Delete")
until(lambda: [n for n in walk(application()) if n.name == "Do you want to delete 'Editor'?"],
      "delete asks")
key("Return")
until(lambda: not [n for n in walk(application()) if n.name == "Do you want to delete 'Editor'?"],
      "Return deletes nothing")
check(len(rows()) == 14, "all rows are there")
key("Delete", "alt+y")
until(lambda: len(rows()) == 13, "deleted")
key("ctrl+shift+s")
until(lambda: [n for n in walk(application()) if n.name == "Save Tool Set"], "save dialog")
two = os.path.join(HOME, "Two words & more.bmt")
xdo("type", two)
key("Return")
until(lambda: os.path.exists(two) and any(n.name == two for n in walk(application())),
      "saved under a new name, which is the caption")
check(open(one, "rb").read() == open(SAMPLE, "rb").read(), "the old file is untouched")
key("ctrl+shift+s")
until(lambda: [n for n in walk(application()) if n.name == "Save Tool Set"], "save dialog")
xdo("type", two)
key("Return")
until(lambda: [n for n in walk(application()) if "already exists" in n.name], "it asks first")
key("alt+y")
until(has_keyboard, "then the frame has the keyboard")

# --- Printing ---
def page():
    return [n.name for n in walk(application()) if n.name.startswith("Page ") and " of " in n.name]


key("ctrl+shift+p")
until(lambda: page() and page()[0].startswith("Page 1 of "), "the report is shown")
pages = page()[0].split()[-1]
key("End")
until(lambda: page() and page()[0] == "Page %s of %s" % (pages, pages), "its last page")
key("Escape")
until(lambda: not page(), "closed")
key("ctrl+p")
until(lambda: [n for n in walk(application()) if n.name == "Print to PDF File"], "a name is asked for")
paper = os.path.join(HOME, "Report.pdf")
xdo("type", paper)
key("Return")
until(lambda: os.path.exists(paper), "the report is in the file")
printed = subprocess.run(["pdftotext", paper, "-"], capture_output=True, text=True).stdout
check(two in printed and "Calculator" in printed and "Page " + pages in printed,
      "as text, with its head, a tool and the last page's number")

# Copy into a second window.
key("ctrl+n")
until(lambda: any(n.name == "Untitled 1" for n in walk(application())), "a new tool set")
key("ctrl+Tab")
until(lambda: len(rows()) >= 13, "back in the first window")
key("Home", "ctrl+c", "ctrl+Tab", "ctrl+v")
until(lambda: any(row[:2] == ("Calculator", "001") for row in rows()), "copied into the other")

# --- Closing ---
key("alt+F4")
until(lambda: [n for n in walk(application()) if n.name == "Save changes to Untitled 1"],
      "the changed set asks")
key("Escape")
until(lambda: not [n for n in walk(application()) if n.name == "Save changes to Untitled 1"]
      and any(n.name == "Untitled 1" for n in walk(application())), "cancel keeps it open")
key("alt+F4")
until(lambda: [n for n in walk(application()) if n.name == "Save changes to Untitled 1"],
      "it asks again")
key("alt+n")
until(lambda: not rows(), "the first close takes the documents")
check(first.poll() is None, "and leaves the frame")
key("alt+F4")
until(lambda: first.poll() is not None, "the second close ends the program")
check(first.returncode == 0, "with 0")

# --- Starting again ---
def stored_place():
    with open(os.path.join(HOME, ".config", "VB Quillon For VB5.conf")) as file:
        return file.read().partition("[Main]")[2]


kept = stored_place()
for how in "as it is", "maximised":
    again = start()
    until(has_keyboard, "started to be closed " + how)
    if how == "maximised":
        box = until(application, "it can be looked at")[0].queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        xdo("mousemove", str(box.x + 300), str(box.y - 10), "click", "--repeat", "2", "1")
        until(lambda: application()[0].queryComponent().getExtents(pyatspi.DESKTOP_COORDS).x == 0,
              "a double click on the title maximises")
    key("alt+F4")
    until(lambda: again.poll() == 0, "closed")
    check(kept and stored_place() == kept, "the window's place with its frame stays")
third = start()
until(application, "it starts again")
until(lambda: any(n.name == two.upper() for n in walk(application())), "the recent files are kept")
until(has_keyboard, "keys go to it")
key("alt+f")
key("Down", "Down", "Return")
until(lambda: len(rows()) == 13, "a recent file is opened with its real spelling")
third.send_signal(signal.SIGKILL)
third.wait()

# --- A set by a foreign hand ---
marker, trap, foreign = (os.path.join(HOME, name) for name in ("marker", "trap.exe", "foreign.bmt"))
with open(trap, "w") as script:
    script.write("#!/bin/sh\ntouch '%s'\n" % marker)
os.chmod(trap, 0o755)


def counted(text):
    return struct.pack("<H", len(text)) + text.encode("latin-1")


hostile = "<img src='file://%s'>$(%s)`%s`" % (trap, trap, trap)
rtf = ("{\\rtf1{\\field{\\*\\fldinst INCLUDEPICTURE \"%s\"}{\\fldrslt x}}"
       "{\\object\\objautlink\\objupdate{\\*\\objdata %s}{\\result y}}}" % (trap, trap.encode().hex()))
with open(foreign, "wb") as file:
    file.write(struct.pack("<hhh", 2, 140, 0) + counted(rtf) + counted(hostile)
               + counted(hostile) + counted(trap) + counted("") + counted(trap)
               + struct.pack("<hhi", 1, -1, -1) + counted(hostile) + counted(rtf)
               + struct.pack("<hhh", -1, 0, 0) + counted(trap) + counted("") + struct.pack("<H", 0))
fourth = start(foreign)
until(application, "after a crash it starts all the same")
until(lambda: [row for row in rows() if row[0] == hostile], "a name that looks like HTML is text")
until(has_keyboard, "keys go to the frame")
key("Home", "alt+Return")
until(lambda: [n for n in walk(application()) if n.name == "VB Quillon Tool Properties"],
      "its tool is shown")
key("Escape")
check(not os.path.exists(marker), "and nothing of it was run")
fourth.kill()
fourth.wait()

# --- From the desktop ---
opener = subprocess.run([OPENER, one], cwd="/", timeout=30)
check(opener.returncode == 0, "the opener starts the program")
until(lambda: len(rows()) == 14, "and has the file opened")
finish()
