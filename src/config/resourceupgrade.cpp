#include "config/resourceupgrade.h"

#include "config/xmlstore.h"

#include <QMap>

#include <algorithm>

using namespace Qt::StringLiterals;

static void initialiseHistory() { Q_INIT_RESOURCE(history); }

namespace {

using Attributes = QMap<QString, QString>;

Attributes attributesOf(const QDomElement &element)
{
    Attributes result;
    const QDomNamedNodeMap map = element.attributes();
    for (int i = 0; i < map.size(); ++i)
        result.insert(map.item(i).nodeName(), map.item(i).nodeValue());
    return result;
}

// The element at this path, which is created together with its missing parents.
QDomElement madeAt(const QString &path, QDomDocument &document, XmlPlaces &places)
{
    if (const QDomElement element = places.value(path); !element.isNull())
        return element;
    const qsizetype end = path.lastIndexOf(u'\\');
    QDomNode parent = document;
    if (end >= 0)
        parent = madeAt(path.first(end), document, places);
    const QDomElement element = document.createElement(path.sliced(end + 1));
    parent.appendChild(element);
    places.insert(path, element);
    return element;
}

}  // namespace

QString shippedInVersion(int version)
{
    initialiseHistory();
    return u":/history/SnapWorkbench.%1.xml"_s.arg(version);
}

QByteArray upgraded(const QDomDocument &user, const QDomDocument &shipped)
{
    const int version = user.documentElement().attribute(u"ver"_s).toInt();
    const auto older = ReadXmlDocument(shippedInVersion(std::max(version, 1)));
    const XmlPlaces theirs = PlacesOf(user);
    const XmlPlaces before = older ? PlacesOf(*older) : XmlPlaces();
    QDomDocument result = shipped.cloneNode().toDocument();
    XmlPlaces places = PlacesOf(result);
    for (auto it = theirs.begin(); it != theirs.end(); ++it) {
        const Attributes values = attributesOf(it.value());
        const bool isSetting = it.key().startsWith(u"Galeway\\Config\\");
        const bool isTheirs = it.key().startsWith(u"Galeway\\Default\\") &&
                              values != attributesOf(before.value(it.key()));
        if (!isSetting && !isTheirs)
            continue;
        QDomElement element = madeAt(it.key(), result, places);
        // A changed section replaces the shipped one completely.
        for (const QString &name : isTheirs ? attributesOf(element).keys() : QStringList())
            element.removeAttribute(name);
        for (auto value = values.begin(); value != values.end(); ++value)
            element.setAttribute(value.key(), value.value());
    }
    return XmlBytes(result);
}
