#include "platform/wayland/kwinwindows.h"

#include "platform/wayland/kwinshot.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_pictureLimit = 2000;  // ms

// KWin 5 and 6 name the same things otherwise. What is open of menus comes and goes with the click
// that starts a grab, so it is no window here.
constexpr const char *s_list = R"(
function isHere(w) {
    if (w.minimized || w.deleted)
        return false;
    if (w.activities && w.activities.length > 0 && w.activities.indexOf(workspace.currentActivity) < 0)
        return false;
    if (w.onAllDesktops)
        return true;
    return typeof w.desktop === "number" ? w.desktop === workspace.currentDesktop
                                         : w.desktops.indexOf(workspace.currentDesktop) >= 0;
}
function layerOf(w) {
    if (w.desktopWindow)
        return -1000;
    if (w.notification || w.onScreenDisplay)
        return 101;
    return w.dock ? 10 : w.keepAbove ? 3 : 0;
}
function sides(r) { return [r.x, r.y, r.width, r.height]; }
var all = workspace.stackingOrder || workspace.clientList();
var told = [];
for (var i = 0; i < all.length; ++i) {
    var w = all[i];
    if (w.popupWindow || w.deleted)
        continue;
    told.push({id: String(w.internalId), name: w.caption, owner: String(w.resourceClass), pid: w.pid,
               frame: sides(w.frameGeometry), inner: sides(w.clientGeometry || w.frameGeometry),
               layer: layerOf(w), isPanel: w.dock, isHere: isHere(w), isActive: w.active,
               fills: w.fullScreen, order: w.stackingOrder});
}
tell(JSON.stringify(told));
)";

constexpr const char *s_focus = R"(
var all = workspace.stackingOrder || workspace.clientList();
for (var i = 0; i < all.length; ++i) {
    if (String(all[i].internalId) !== "%1")
        continue;
    all[i].minimized = false;
    if (workspace.activeClient !== undefined)
        workspace.activeClient = all[i];
    else
        workspace.activeWindow = all[i];
}
tell("done");
)";

QRectF rectOf(const QJsonValue &sides)
{
    return {sides[0].toDouble(), sides[1].toDouble(), sides[2].toDouble(), sides[3].toDouble()};
}

}  // namespace

// Who asks meanwhile gets the same answer.
void KWinWindows::ask(Answer answer)
{
    m_answers.append(std::move(answer));
    if (m_answers.size() > 1)
        return;
    m_script.run(QString::fromLatin1(s_list), [this](const QString &text) {
        const auto windows =
            parse(text.toUtf8(), [this](const QString &id) { return numberOf(id); });
        for (const Answer &owed : std::exchange(m_answers, {}))
            owed(windows);
    });
}

// KWin refuses that to programs in the background which ask by the usual way.
void KWinWindows::focus(const WaylandWindow &window, const QList<WaylandWindow> & /*all*/)
{
    if (!window.isFocused)
        m_script.run(QString::fromLatin1(s_focus).arg(m_numbers.key(window.entry.number)),
                     [](const QString &) {});
}

int KWinWindows::numberOf(const QString &id)
{
    const auto known = m_numbers.constFind(id);
    return known != m_numbers.cend()
               ? *known
               : *m_numbers.insert(id, static_cast<int>(m_numbers.size()) + 1);
}

QList<WaylandWindow> KWinWindows::parse(const QByteArray &json,
                                        const std::function<int(const QString &)> &numberOf)
{
    struct Told {
        WaylandWindow window{};
        int order = 0;
    };
    QList<Told> all;
    const QJsonArray list = QJsonDocument::fromJson(json).array();
    for (const auto &one : list) {
        const QRectF bounds = rectOf(one["frame"_L1]);
        const QString id = one["id"_L1].toString();
        if (bounds.isEmpty() || id.isEmpty())
            continue;
        WaylandWindow window;
        window.entry.number = numberOf(id);
        window.entry.layer = one["layer"_L1].toInt();
        window.entry.bounds = bounds;
        const QRectF inner = rectOf(one["inner"_L1]);
        if (bounds.contains(inner))
            window.entry.frame =
                QMarginsF(inner.left() - bounds.left(), inner.top() - bounds.top(),
                          bounds.right() - inner.right(), bounds.bottom() - inner.bottom())
                    .toMargins();
        window.entry.name = one["name"_L1].toString();
        window.entry.owner = one["owner"_L1].toString();
        window.entry.process = static_cast<uint>(one["pid"_L1].toInt());
        if (one["isPanel"_L1].toBool())
            window.entry.kind = WindowCatalogue::Kind::Panel;
        window.isVisible = one["isHere"_L1].toBool();
        window.isFocused = one["isActive"_L1].toBool();
        window.fullscreen = one["fills"_L1].toBool() ? 1 : 0;
        all.prepend({window, one["order"_L1].toInt()});
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Told &a, const Told &b) { return a.order > b.order; });
    QList<WaylandWindow> result;
    for (const Told &told : std::as_const(all))
        result.append(told.window);
    return result;
}

QImage KWinWindows::pictureOf(int number)
{
    const QString id = m_numbers.key(number);
    if (id.isEmpty())
        return {};
    const std::unique_ptr<KWinShot> shot = KWinShot::ofWindow(m_bus, id, s_pictureLimit);
    shot->wait();
    m_hasPictures = shot->outcome() != KWinShot::Outcome::Absent &&
                    shot->outcome() != KWinShot::Outcome::Refused;
    return shot->picture();
}
