"""Another program with something that scrolls, of another toolkit. Each row has its number as a bar
code (corpus/rowcode.h). Prints where the view lies in the window and how high the header in it is,
as "view X Y WIDTH HEIGHT HEADER", once it is laid out.

scrollwindow.py list|icons|editor|zebra|web|menus [OPTION...]

zebra is of the newest toolkit; menus has a menu with a submenu, and nothing that scrolls. The
options: rows=N, status (a line below the view), bar (a scroll bar with a place of its own), smooth
(the page scrolls in small steps), bare (without a frame).
"""

import base64
import sys

import gi

kind = sys.argv[1]
options = dict(part.partition("=")[::2] for part in sys.argv[2:])
row_count = int(options.get("rows", 150))
is_gtk4 = kind == "zebra"
for part in ("Gdk", "Gtk"):
    gi.require_version(part, "4.0" if is_gtk4 else "3.0")
from gi.repository import Gdk, GdkPixbuf, GLib, Gtk

BITS, CHECK_BITS, CODE_HEIGHT = 14, 4, 12
CELLS = BITS + CHECK_BITS + 2
HEADER_HEIGHT = 48  # the page's
MARK = 3  # the row that is selected, or has the caret
WORDS = "amber brook cedar delta ember fjord grove heath inlet jetty knoll ledge marsh".split()


def text(row):
    return " ".join(WORDS[(row * step) // 7 % len(WORDS)] for step in (3, 5, 11)) + f" {row}"


def code(row, cell=3):
    check = (row ^ row >> 4 ^ row >> 8 ^ row >> 12) & 15
    value = row << CHECK_BITS | check
    line = b"\xff\x00\xff" * cell
    for bit in reversed(range(BITS + CHECK_BITS)):
        line += (b"\x00\x00\x00" if value >> bit & 1 else b"\xff\xff\xff") * cell
    line += b"\x00\xff\xff" * cell
    return GdkPixbuf.Pixbuf.new_from_bytes(GLib.Bytes.new(line * CODE_HEIGHT),
                                           GdkPixbuf.Colorspace.RGB, False, 8, cell * CELLS,
                                           CODE_HEIGHT, len(line))


def page():
    """Rows of one height, every fourth with a picture that comes when it has been in sight."""
    rows = []
    for row in range(row_count):
        data = base64.b64encode(code(row).save_to_bufferv("png", [], [])[1]).decode()
        late = f'<i style="--c: hsl({row * 37 % 360} 60% 40%)"></i>' if row % 4 == 0 else ""
        rows.append(f'<p><img src="data:image/png;base64,{data}">{text(row)}{late}</p>')
    behavior = "smooth" if "smooth" in options else "auto"
    return f"""<!DOCTYPE html><meta charset="utf-8"><style>
html {{ scroll-behavior: {behavior} }} body {{ margin: 0; font: 15px sans-serif }}
header {{ position: sticky; top: 0; z-index: 1; height: {HEADER_HEIGHT}px; line-height: {HEADER_HEIGHT}px;
  background: #245; color: #fff; box-shadow: 0 4px 12px rgba(0, 0, 0, .5) }}
p {{ margin: 0; height: 32px; line-height: 32px; position: relative; padding-left: 20px }}
img {{ vertical-align: middle; margin-right: 12px }}
i {{ position: absolute; right: 30px; top: 2px; width: 150px; height: 28px; background: #c9c7cb }}
i.here {{ background: var(--c) }}</style>
<header>&nbsp; A header that stays</header>{"".join(rows)}<script>
const seen = new IntersectionObserver(entries => entries.forEach(entry => {{
  if (entry.isIntersecting) setTimeout(() => entry.target.className = "here", 250);
}}));
document.querySelectorAll("i").forEach(picture => seen.observe(picture));
</script>"""


def web():
    gi.require_version("WebKit2", "4.1")
    from gi.repository import WebKit2

    result = WebKit2.WebView()
    result.get_settings().set_enable_smooth_scrolling("smooth" in options)
    result.load_html(page(), None)
    return result


def rows_list():
    store = Gtk.ListStore(GdkPixbuf.Pixbuf, str)
    for row in range(row_count):
        store.append([code(row), text(row)])
    result = Gtk.TreeView(model=store, headers_visible=False)
    column = Gtk.TreeViewColumn()
    for cell, attribute, index in ((Gtk.CellRendererPixbuf(xpad=12), "pixbuf", 0),
                                   (Gtk.CellRendererText(), "text", 1)):
        column.pack_start(cell, False)
        column.add_attribute(cell, attribute, index)
    result.append_column(column)
    result.get_selection().select_path(Gtk.TreePath.new_from_indices([MARK]))
    return result


def icons():
    """One sheet of paper after the other, with names that differ in a digit."""
    store = Gtk.ListStore(GdkPixbuf.Pixbuf, str)
    for row in range(row_count):
        sheet = GdkPixbuf.Pixbuf.new(GdkPixbuf.Colorspace.RGB, False, 8, 48, 48)
        sheet.fill(0xe1e1e1ff)
        code(row, 1).copy_area(0, 0, CELLS, CODE_HEIGHT, sheet, 14, 30)
        store.append([sheet, f"file {row:03}.txt"])
    return Gtk.IconView(model=store, pixbuf_column=0, text_column=1, item_width=90)


def editor():
    gi.require_version("GtkSource", "4")
    from gi.repository import GtkSource

    result = GtkSource.View(show_line_numbers=True, highlight_current_line=True, monospace=True)
    buffer = result.get_buffer()
    for row in range(row_count):
        buffer.insert_pixbuf(buffer.get_end_iter(), code(row))
        buffer.insert(buffer.get_end_iter(), "  " + text(row) + "\n" * (row < row_count - 1))
    place = buffer.get_start_iter()
    place.set_line(MARK)
    place.forward_to_line_end()  # the caret stays off the code
    buffer.place_cursor(place)
    return result


def zebra():
    numbers = Gtk.StringList.new([str(row) for row in range(row_count)])
    result = Gtk.ColumnView(model=Gtk.SingleSelection(model=numbers, selected=MARK),
                            show_row_separators=True, show_column_separators=True)

    def add_column(title, create):
        def bind(_factory, item):
            row = item.get_position()
            box = Gtk.Box(css_classes=["odd" if row % 2 else "even"])
            box.append(create(row))
            item.set_child(box)

        factory = Gtk.SignalListItemFactory()
        factory.connect("bind", bind)
        result.append_column(Gtk.ColumnViewColumn(title=title, factory=factory,
                                                  expand=title == "State"))

    def picture(row):
        return Gtk.Picture(paintable=Gdk.Texture.new_for_pixbuf(code(row)), can_shrink=False,
                           valign=Gtk.Align.CENTER, content_fit=Gtk.ContentFit.SCALE_DOWN)

    add_column("No.", lambda row: Gtk.Label(label=str(row), xalign=0))
    add_column("Code", picture)
    add_column("Name", lambda row: Gtk.Label(label=text(row), xalign=0))
    add_column("State", lambda row: Gtk.Label(label="the same", xalign=0))
    style = Gtk.CssProvider()
    style.load_from_data(b"columnview cell { padding: 0; } columnview box { padding: 4px; }"
                         b".odd { background: #dde6f0; } .even { background: #ffffff; }"
                         b"row:selected box { background: none; }")
    Gtk.StyleContext.add_provider_for_display(Gdk.Display.get_default(), style,
                                              Gtk.STYLE_PROVIDER_PRIORITY_APPLICATION)
    return result


def menus():
    def fill(shell, entries):
        for label, inner in entries:
            item = Gtk.MenuItem(label=label)
            if inner:
                item.set_submenu(fill(Gtk.Menu(), inner))
            shell.append(item)
        return shell

    more = ("More", [("Inner entry", None), ("Another inner entry", None)])
    extras = [("First entry", None), more, ("Last entry", None)]
    return fill(Gtk.MenuBar(), [("Extras", extras)])


def header_height():
    if kind == "web":
        return HEADER_HEIGHT
    return view.get_first_child().get_height() if kind == "zebra" else 0


def tell():
    width = view.get_width() if is_gtk4 else view.get_allocated_width()
    height = view.get_height() if is_gtk4 else view.get_allocated_height()
    if width <= 1 or (kind == "web" and view.is_loading()):
        return True
    place = view.translate_coordinates(window, 0, 0)
    print("view", *(int(part) for part in place), width, height, header_height(), flush=True)
    return False


window = Gtk.Window(title="scroll", decorated="bare" not in options)
# A list is much wider than its text, as in file managers.
window.set_default_size(1200 if kind == "list" else 640, 520)
content = view = {"list": rows_list, "icons": icons, "editor": editor, "zebra": zebra, "web": web,
                  "menus": menus}[kind]()
if kind not in ("web", "menus"):
    content = Gtk.ScrolledWindow(overlay_scrolling="bar" not in options)
loop = GLib.MainLoop()
if is_gtk4:
    content.set_child(view)
    window.set_child(content)
    window.connect("close-request", lambda _window: loop.quit())
    window.present()
else:
    if content != view:
        content.add(view)
    outside = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
    outside.pack_start(content, kind != "menus", True, 0)
    if "status" in options:
        outside.pack_end(Gtk.Label(label=f"{row_count} entries", xalign=0, height_request=26),
                         False, True, 0)
    window.add(outside)
    window.connect("destroy", lambda _window: loop.quit())
    window.show_all()
view.grab_focus()
GLib.timeout_add(30, tell)
loop.run()
