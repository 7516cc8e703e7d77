"""Another program, of another toolkit: a bare window with a menu that has a submenu.

menuwindow.py X Y
"""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gtk

window = Gtk.Window(title="menus")
window.set_decorated(False)
window.set_default_size(400, 300)
window.move(int(sys.argv[1]), int(sys.argv[2]))


def menu_of(entries):
    menu = Gtk.Menu()
    for label, inner in entries:
        item = Gtk.MenuItem(label=label)
        if inner:
            item.set_submenu(menu_of(inner))
        menu.append(item)
    return menu


bar = Gtk.MenuBar()
extras = Gtk.MenuItem(label="Extras")
extras.set_submenu(menu_of([("First entry", None),
                            ("More", [("Inner entry", None), ("Another inner entry", None)]),
                            ("Last entry", None)]))
bar.append(extras)
box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
box.pack_start(bar, False, False, 0)
window.add(box)
window.show_all()
Gtk.main()
