"""Another program with something that scrolls, of another toolkit. Each row has its number as a bar
code (rowcode.h). Prints where the view lies in the window and how high the header in it is, as
"view X Y WIDTH HEIGHT HEADER", once it is laid out.

corpuswindow.py gtk3|gtk4 list|table|zebra|tree|editor|icons|wide|lines [OPTION...]
                 (the last three: GTK 3 only)
corpuswindow.py gtk3 web [OPTION...]
corpuswindow.py page FILE [OPTION...]      writes the page of "web" for any browser

The options: rows=N, mark=ROW (selected, or with the caret), banner and status (above and
below the view), menu (opens by itself after some way, for a while), bar (a scroll bar with a place of
its own), smooth (the page scrolls in small steps).
"""

import base64
import sys

import gi

toolkit, kind = sys.argv[1:3]
options = dict(part.partition("=")[::2] for part in sys.argv[3:])
row_count = int(options.get("rows", 150))
mark = int(options.get("mark", 3))
is_gtk4 = toolkit == "gtk4"
for part in ("Gdk", "Gtk"):
    gi.require_version(part, "4.0" if is_gtk4 else "3.0")
from gi.repository import Gdk, GdkPixbuf, Gio, GLib, GObject, Gtk

BITS, CHECK_BITS, CODE_HEIGHT = 14, 4, 12
CELLS = BITS + CHECK_BITS + 2
COLUMNS = 24  # of what is wider than its view
HEADER_HEIGHT = 48  # the page's
MENU_AFTER, MENU_TIME = 900, 1500  # pixels, ms
WORDS = "amber brook cedar delta ember fjord grove heath inlet jetty knoll ledge marsh".split()


def text(row):
    return " ".join(WORDS[(row * step) // 7 % len(WORDS)] for step in (3, 5, 11)) + f" {row}"


def pixbuf(row, cell=3):
    check = (row ^ row >> 4 ^ row >> 8 ^ row >> 12) & 15
    value = row << CHECK_BITS | check
    line = b"\xff\x00\xff" * cell
    for bit in reversed(range(BITS + CHECK_BITS)):
        line += (b"\x00\x00\x00" if value >> bit & 1 else b"\xff\xff\xff") * cell
    line += b"\x00\xff\xff" * cell
    return GdkPixbuf.Pixbuf.new_from_bytes(GLib.Bytes.new(line * CODE_HEIGHT),
                                           GdkPixbuf.Colorspace.RGB, False, 8, cell * CELLS,
                                           CODE_HEIGHT, len(line))


def code(row):
    return Gdk.Texture.new_for_pixbuf(pixbuf(row)) if is_gtk4 else pixbuf(row)


def depth(row):
    return (0, 1, 2, 2, 1, 2, 2, 2)[row % 8]


def page():
    """Rows of one height, every fourth with a picture that comes when it has been in sight."""
    rows = []
    for row in range(row_count):
        data = base64.b64encode(pixbuf(row).save_to_bufferv("png", [], [])[1]).decode()
        late = f'<i style="--c: hsl({row * 37 % 360} 60% 40%)"></i>' if row % 4 == 0 else ""
        rows.append(f'<p><img src="data:image/png;base64,{data}">{text(row)}{late}</p>')
    behavior = "smooth" if "smooth" in options else "auto"
    return f"""<!DOCTYPE html><meta charset="utf-8"><title>corpus</title><style>
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


if toolkit == "page":
    with open(kind, "w", encoding="utf-8") as file:
        file.write(page())
    sys.exit()


def gtk3_tree_view():
    store = Gtk.TreeStore(GdkPixbuf.Pixbuf, str, str, int)
    parents = []
    for row in range(row_count):
        level = depth(row) if kind == "tree" else 0
        parent = parents[level - 1] if level else None
        parents[level:] = [store.append(parent, [code(row), text(row), "the same", row])]
    view = Gtk.TreeView(model=store, headers_visible=kind == "zebra")

    def shade(_column, cell, model, place, _data):
        cell.set_property("cell-background", "#dde6f0" if model[place][3] % 2 else "#ffffff")

    def column(title, *cells):
        result = Gtk.TreeViewColumn(title)
        for cell, attribute, index in cells:
            result.pack_start(cell, False)
            result.add_attribute(cell, attribute, index)
            if kind == "zebra":
                result.set_cell_data_func(cell, shade)
        view.append_column(result)
        return result

    codes = (Gtk.CellRendererPixbuf(), "pixbuf", 0)
    texts = (Gtk.CellRendererText(), "text", 1)
    if kind == "zebra":
        column("No.", (Gtk.CellRendererText(), "text", 3))
    if kind in ("table", "zebra"):
        view.set_grid_lines(Gtk.TreeViewGridLines.BOTH)
        column("Code", codes)
        column("Name", texts).set_min_width(220)
        column("State", (Gtk.CellRendererText(), "text", 2))
    else:
        column("Code", codes, texts)
    view.expand_all()
    view.get_selection().select_path(Gtk.TreePath.new_from_indices([mark]))
    return view


def gtk3_wide():
    """Each cell has a number of its own, line by line."""
    store = Gtk.ListStore(*[GdkPixbuf.Pixbuf] * COLUMNS)
    for row in range(row_count // COLUMNS):
        store.append([code(row * COLUMNS + column) for column in range(COLUMNS)])
    view = Gtk.TreeView(model=store)
    for column in range(COLUMNS):
        cell = Gtk.CellRendererPixbuf(width=100)
        view.append_column(Gtk.TreeViewColumn(f"Column {column}", cell, pixbuf=column))
    return view


def gtk3_lines():
    """Lines that are not wrapped, of which every seventh is long."""
    view = Gtk.TextView(wrap_mode=Gtk.WrapMode.NONE, monospace=True)
    buffer = view.get_buffer()
    for row in range(row_count):
        buffer.insert_pixbuf(buffer.get_end_iter(), code(row))
        words = text(row) + (" " + text(row + 5)) * (6 if row % 7 == 3 else row % 2)
        buffer.insert(buffer.get_end_iter(), "  " + words + "\n" * (row < row_count - 1))
    buffer.place_cursor(buffer.get_start_iter())
    return view


def gtk3_icons():
    """One sheet of paper after the other, with names that differ in a digit."""
    store = Gtk.ListStore(GdkPixbuf.Pixbuf, str)
    for row in range(row_count):
        sheet = GdkPixbuf.Pixbuf.new(GdkPixbuf.Colorspace.RGB, False, 8, 48, 48)
        sheet.fill(0xe1e1e1ff)
        pixbuf(row, 1).copy_area(0, 0, CELLS, CODE_HEIGHT, sheet, 14, 30)
        store.append([sheet, f"file {row:03}.txt"])
    return Gtk.IconView(model=store, pixbuf_column=0, text_column=1, item_width=90)


class Row(GObject.Object):
    def __init__(self, number):
        super().__init__()
        self.number = number
        self.children = Gio.ListStore.new(Row)


def gtk4_list_view():
    rows = Gio.ListStore.new(Row)
    parents = []
    for number in range(row_count):
        row = Row(number)
        level = depth(number) if kind == "tree" else 0
        (parents[level - 1].children if level else rows).append(row)
        parents[level:] = [row]
    model = rows
    if kind == "tree":
        model = Gtk.TreeListModel.new(
            rows, False, True, lambda row: row.children if row.children.get_n_items() else None)
    selection = Gtk.SingleSelection(model=model, selected=mark)

    def factory(*parts):
        def set_up(_factory, item):
            box = Gtk.Box(spacing=8)
            for part in parts:
                box.append(Gtk.Picture(can_shrink=False, valign=Gtk.Align.CENTER,
                                       content_fit=Gtk.ContentFit.SCALE_DOWN)
                           if part == "code" else Gtk.Label(xalign=0))
            if kind == "tree":
                item.set_child(Gtk.TreeExpander(child=box))
            else:
                item.set_child(box)

        def bind(_factory, item):
            row, box = item.get_item(), item.get_child()
            if kind == "tree":
                box.set_list_row(row)
                row, box = row.get_item(), box.get_child()
            if kind == "zebra":
                box.set_css_classes(["odd" if row.number % 2 else "even"])
            part = box.get_first_child()
            for name in parts:
                if name == "code":
                    part.set_paintable(code(row.number))
                else:
                    part.set_label({"text": text(row.number), "same": "the same",
                                    "number": str(row.number)}[name])
                part = part.get_next_sibling()

        result = Gtk.SignalListItemFactory()
        result.connect("setup", set_up)
        result.connect("bind", bind)
        return result

    if kind in ("list", "tree"):
        return Gtk.ListView(model=selection, factory=factory("code", "text"))
    view = Gtk.ColumnView(model=selection, show_row_separators=True, show_column_separators=True)
    columns = [("Code", "code", False), ("Name", "text", False), ("State", "same", True)]
    for title, part, expand in ([("No.", "number", False)] if kind == "zebra" else []) + columns:
        view.append_column(Gtk.ColumnViewColumn(title=title, factory=factory(part), expand=expand))
    style = Gtk.CssProvider()
    style.load_from_data(b"columnview cell { padding: 0; } columnview box { padding: 4px; }"
                         b".odd { background: #dde6f0; } .even { background: #ffffff; }"
                         b"row:selected box { background: none; }")
    Gtk.StyleContext.add_provider_for_display(Gdk.Display.get_default(), style,
                                              Gtk.STYLE_PROVIDER_PRIORITY_APPLICATION)
    return view


def editor():
    gi.require_version("GtkSource", "5" if is_gtk4 else "4")
    from gi.repository import GtkSource

    view = GtkSource.View(show_line_numbers=True, highlight_current_line=True, monospace=True)
    buffer = view.get_buffer()
    for row in range(row_count):
        end = buffer.get_end_iter()
        if is_gtk4:
            buffer.insert_paintable(end, code(row))
        else:
            buffer.insert_pixbuf(end, code(row))
        buffer.insert(buffer.get_end_iter(), "  " + text(row) + "\n" * (row < row_count - 1))
    place = buffer.get_start_iter()
    place.set_line(mark)
    place.forward_to_line_end()  # the caret stays off the code
    buffer.place_cursor(place)
    return view


def web():
    gi.require_version("WebKit2", "4.1")
    from gi.repository import WebKit2

    view = WebKit2.WebView()
    view.get_settings().set_enable_smooth_scrolling("smooth" in options)
    view.load_html(page(), None)
    return view


def pack(box, child, expand=False):
    if is_gtk4:
        child.set_vexpand(expand)
        box.append(child)
    else:
        box.pack_start(child, expand, expand, 0)


def open_menu(adjustment):
    if adjustment.get_value() < MENU_AFTER or "menu" not in options:
        return
    del options["menu"]
    menu = Gtk.Menu()
    for label in ("One", "Two", "Three"):
        menu.append(Gtk.MenuItem(label=label))
    menu.show_all()
    menu.popup_at_widget(content, Gdk.Gravity.CENTER, Gdk.Gravity.CENTER, None)
    GLib.timeout_add(MENU_TIME, lambda: menu.popdown() or menu.destroy())


window = Gtk.Window(title="corpus")
# A list is much wider than its text, as in file managers.
window.set_default_size(1200 if kind == "list" else 640, 520)
outside = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
if "banner" in options:
    pack(outside, Gtk.Label(label="Something to be told, above what scrolls", height_request=40))
if kind == "web":
    content = view = web()
    pack(outside, view, True)
else:
    special = {"editor": editor, "icons": gtk3_icons, "wide": gtk3_wide, "lines": gtk3_lines}
    if kind in special:
        view = special[kind]()
    else:
        view = gtk4_list_view() if is_gtk4 else gtk3_tree_view()
    content = Gtk.ScrolledWindow(overlay_scrolling="bar" not in options)
    content.get_vadjustment().connect("value-changed", open_menu)
    if is_gtk4:
        content.set_child(view)
    else:
        content.add(view)
    pack(outside, content, True)
if "status" in options:
    pack(outside, Gtk.Label(label=f"{row_count} entries", xalign=0, height_request=26))
loop = GLib.MainLoop()
if is_gtk4:
    window.set_child(outside)
    window.connect("close-request", lambda _window: loop.quit())
    window.present()
else:
    window.add(outside)
    window.connect("destroy", lambda _window: loop.quit())
    window.show_all()
view.grab_focus()


def header_height():
    if kind == "web":
        return HEADER_HEIGHT
    if is_gtk4 and isinstance(view, Gtk.ColumnView):
        return view.get_first_child().get_height()
    if not is_gtk4 and isinstance(view, Gtk.TreeView):
        return view.convert_bin_window_to_widget_coords(0, 0)[1]
    return 0


def tell():
    width = view.get_width() if is_gtk4 else view.get_allocated_width()
    height = view.get_height() if is_gtk4 else view.get_allocated_height()
    if width <= 1 or (kind == "web" and view.is_loading()):
        return True
    place = view.translate_coordinates(window, 0, 0)
    print("view", *(int(part) for part in place), width, height, header_height(), flush=True)
    return False


GLib.timeout_add(30, tell)
loop.run()
