#include "shell/pinfolder.h"

#include "base/log.h"
#include "base/wholefile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_farthest = 1 << 20;  // device pixels from the corner of the desktop
constexpr qint64 s_longestList = 1 << 20;

const QString s_ending = u".png"_s;

QJsonObject entryOf(const PinnedPicture &pin)
{
    return {{u"id"_s, pin.id},       {u"name"_s, pin.name}, {u"x"_s, pin.place.x()},
            {u"y"_s, pin.place.y()}, {u"zoom"_s, pin.zoom}, {u"opacity"_s, pin.opacity}};
}

// What was written by hand, or by half, leads to a pin that can be seen.
void take(PinnedPicture &pin, const QJsonObject &entry)
{
    const auto length = [&entry](const QString &key) {
        return std::clamp(entry.value(key).toInt(), -s_farthest, s_farthest);
    };
    pin.name = entry.value(u"name"_s).toString();
    pin.place = {length(u"x"_s), length(u"y"_s)};
    pin.zoom = std::clamp(entry.value(u"zoom"_s).toDouble(1), PinnedPicture::s_leastZoom,
                          PinnedPicture::s_mostZoom);
    pin.opacity =
        std::clamp(entry.value(u"opacity"_s).toDouble(1), PinnedPicture::s_leastOpacity, 1.0);
}

}  // namespace

QString PinFolder::fileOf(const QString &id) const { return m_path + u'/' + id + s_ending; }

QString PinFolder::listFile() const { return m_path + u"/pins.json"_s; }

QList<PinnedPicture> PinFolder::read() const
{
    QFile list(listFile());
    QJsonArray entries;
    if (list.open(QFile::ReadOnly) && list.size() <= s_longestList)
        entries = QJsonDocument::fromJson(list.readAll()).array();
    QList<PinnedPicture> result;
    const QStringList names =
        QDir(m_path).entryList({u'*' + s_ending}, QDir::Files, QDir::Time | QDir::Reversed);
    for (const QString &name : names) {
        PinnedPicture pin{.id = name.chopped(s_ending.size())};
        if (!pin.picture.load(m_path + u'/' + name, "png")) {
            qCWarning(logStore) << "no pin:" << name;
            continue;
        }
        const auto entry = std::find_if(entries.begin(), entries.end(), [&](const auto &value) {
            return value.toObject().value(u"id"_s).toString() == pin.id;
        });
        if (entry != entries.end())
            take(pin, entry->toObject());
        result.append(pin);
    }
    return result;
}

QString PinFolder::write(const QList<PinnedPicture> &pins) const
{
    const QDir folder(m_path);
    if (pins.isEmpty() && !folder.exists())
        return {};
    folder.mkpath(u"."_s);
    QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QString trouble;
    const auto put = [&trouble](const QString &path, const QByteArray &bytes) {
        WholeFile file(path, WholeFile::Readers::User);
        if (!file.write(bytes))
            trouble = file.error();
    };
    QJsonArray entries;
    QStringList kept;
    for (const PinnedPicture &pin : pins) {
        entries.append(entryOf(pin));
        kept.append(pin.id + s_ending);
        if (QFile::exists(fileOf(pin.id)))
            continue;
        QBuffer png;
        png.open(QBuffer::WriteOnly);
        pin.picture.save(&png, "png");
        put(fileOf(pin.id), png.data());
    }
    put(listFile(), QJsonDocument(entries).toJson());
    for (const QString &name : folder.entryList({u'*' + s_ending}, QDir::Files)) {
        if (!kept.contains(name))
            QFile::remove(m_path + u'/' + name);
    }
    return trouble;
}
