#include "config/filters.h"

#include <QFileInfo>
#include <QImageWriter>

using namespace Qt::StringLiterals;

namespace {

constexpr auto s_layered = "ora";

}  // namespace

QString GetFilterStr(const QList<QByteArray> &formats)
{
    QString patterns;
    for (const QByteArray &format : formats)
        patterns += u"*."_s + QString::fromLatin1(format) + u';';
    patterns.chop(1);
    // Without patterns "||" follows the label directly; an empty pattern would leave a third bar.
    const QString ending = patterns.isEmpty() ? u"|"_s : patterns + u"||"_s;
    return u"All Picture files("_s + patterns + u")|"_s + ending;
}

QString GetOpenPictureFilter()
{
    return GetFilterStr(QImageWriter::supportedImageFormats() << s_layered);
}

QString GetLayeredPictureFilter() { return u"ora(*.ora)|*.ora||"_s; }

QString GetSavePictureFilter(const QString &fileName, QString &selected)
{
    return GetSavePictureFilter(fileName, selected, QImageWriter::supportedImageFormats());
}

QString GetSavePictureFilter(const QString &fileName, QString &selected,
                             const QList<QByteArray> &formats)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    const QString extension = dot < 0 ? QString() : fileName.sliced(dot + 1).toUpper();
    selected = u""_s;
    QString filter;
    for (const QByteArray &format : formats) {
        const QString name = QString::fromLatin1(format);
        const QString label = name + u"(*."_s + name + u')';
        if (name.toUpper() == extension)
            selected = label;
        filter += label + u"|*."_s + name + u'|';
    }
    return filter.isEmpty() ? filter : filter + u'|';
}

bool HasSavableEnding(const QString &path)
{
    return HasLayeredEnding(path) || QImageWriter::supportedImageFormats().contains(
                                         QFileInfo(path).suffix().toLower().toLatin1());
}

bool HasLayeredEnding(const QString &path)
{
    return QFileInfo(path).suffix().toLower() == QLatin1StringView(s_layered);
}

QString GetMacFilter(const QString &filter)
{
    QString labels;
    bool inLabel = true;
    for (const QChar c : filter) {
        if (inLabel)
            labels += c == u'|' ? u";;"_s : QString(c == u';' ? u' ' : c);
        inLabel ^= c == u'|';
    }
    // Drops the ";;" after the last label and the ";;" that the final "|" has added.
    if (labels.size() >= 4)
        labels.chop(4);
    return labels;
}
