#include "platform/wayland/swaytree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_deepest = 100;  // containers in containers

QRectF rectOf(const QJsonValue &value)
{
    return {value["x"_L1].toDouble(), value["y"_L1].toDouble(), value["width"_L1].toDouble(),
            value["height"_L1].toDouble()};
}

// The name by which the user knows a program of X, or the one by which a Wayland program calls
// itself.
QString ownerOf(const QJsonObject &node)
{
    const QString own = node["app_id"_L1].toString();
    return own.isEmpty() ? node["window_properties"_L1]["class"_L1].toString() : own;
}

WaylandWindow windowOf(const QJsonObject &node, const QJsonObject &parent)
{
    WaylandWindow window;
    const QRectF content = rectOf(node["rect"_L1]);
    const QRectF inner = rectOf(node["window_rect"_L1]).translated(content.topLeft());
    // Titles that lie above one another or side by side are those of several windows.
    const QString layout = parent["layout"_L1].toString();
    const bool hasTitle = layout != u"tabbed" && layout != u"stacked";
    const QRectF title =
        hasTitle ? rectOf(node["deco_rect"_L1]).translated(rectOf(parent["rect"_L1]).topLeft())
                 : QRectF();
    WindowCatalogue::Entry &entry = window.entry;
    entry.number = node["id"_L1].toInt();
    entry.bounds = title.isEmpty() ? content : content | title;
    if (!inner.isEmpty())
        entry.frame =
            QMarginsF(inner.left() - entry.bounds.left(), inner.top() - entry.bounds.top(),
                      entry.bounds.right() - inner.right(), entry.bounds.bottom() - inner.bottom())
                .toMargins();
    entry.name = node["name"_L1].toString();
    entry.owner = ownerOf(node);
    entry.process = static_cast<uint>(node["pid"_L1].toInt());
    window.isVisible = node["visible"_L1].toBool();
    window.isFocused = node["focused"_L1].toBool();
    window.fullscreen = node["fullscreen_mode"_L1].toInt();
    return window;
}

// The windows in a container, front to back: what floats lies over what is tiled, and the last one
// of the floating is the uppermost.
void collect(const QJsonObject &node, const QJsonObject &parent, int depth,
             QList<WaylandWindow> &windows)
{
    if (depth > s_deepest)
        return;
    const QJsonArray floating = node["floating_nodes"_L1].toArray();
    const QJsonArray tiled = node["nodes"_L1].toArray();
    for (auto i = floating.size(); i > 0; --i)
        collect(floating.at(i - 1).toObject(), node, depth + 1, windows);
    for (const auto &inner : tiled)
        collect(inner.toObject(), node, depth + 1, windows);
    // Only windows have a process.
    if (floating.isEmpty() && tiled.isEmpty() && node.contains("pid"_L1))
        windows.append(windowOf(node, parent));
}

}  // namespace

QList<WaylandWindow> readSwayTree(const QByteArray &json)
{
    QList<WaylandWindow> windows;
    collect(QJsonDocument::fromJson(json).object(), {}, 0, windows);
    // A window that fills the screen lies over all others there.
    std::stable_sort(windows.begin(), windows.end(),
                     [](const auto &a, const auto &b) { return a.fullscreen > b.fullscreen; });
    return windows;
}
