"""Another program: the pane of scrollwindow.cpp, by another toolkit, which chooses the width of its
scroll bar; prints it. A bare window has no frame.

scrollwindow.py KIND [bare]
"""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk

rows = [f"row {i}" for i in range(300)]
kind = sys.argv[1]

window = Gtk.Window(title="scroll")
window.set_default_size(400, 300)
if len(sys.argv) > 2:
    # A frame of an odd number of pixels is told in rounded ones where each of them is two.
    window.set_decorated(False)
    window.move(50, 40)
place = Gtk.Fixed()
window.add(place)
pane = Gtk.ScrolledWindow(overlay_scrolling=False, hscrollbar_policy=Gtk.PolicyType.NEVER)
pane.set_size_request(300, 200)
place.put(pane, 20, 30)
if kind == "text":
    content = Gtk.TextView()
    content.get_buffer().set_text("\n".join(rows))
else:
    content = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
    for row in rows:
        content.pack_start(Gtk.Label(label=row), False, False, 0)
pane.add(content)
window.show_all()


def tell():
    width = pane.get_vscrollbar().get_allocated_width()
    if width <= 1:
        return True
    print(width, flush=True)
    return False


GLib.idle_add(tell)
Gtk.main()
