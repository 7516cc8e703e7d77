#include "editing/drawingcheck.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QHash>
#include <QImageReader>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>
#include <vector>

#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype s_longestText = 16 << 20;
constexpr qsizetype s_deepest = 64;         // nested elements, or nested uses
constexpr qint64 s_mostElements = 1 << 18;  // rendered elements, counting each use

QString readsOthers()
{
    return QCoreApplication::translate("QPictureDocument",
                                       "The drawing refers to other files, which are not read.");
}

QString isTooMuch()
{
    return QCoreApplication::translate("QPictureDocument", "The drawing is too complicated.");
}

QStringView withoutPrefix(QStringView name) { return name.mid(name.lastIndexOf(u':') + 1); }

// Whether a style refers to something outside the drawing.
bool leadsOut(const QString &style)
{
    static const QRegularExpression s_outside(uR"(@import|url\(\s*["']?(?!\s*["']?(#|data:)))"_s,
                                              QRegularExpression::CaseInsensitiveOption);
    return s_outside.match(style).hasMatch();
}

// Reads the text with the same parser as the toolkit's renderer, so that both see the same
// elements.
class Reader
{
public:
    explicit Reader(const QByteArray &drawing) : m_xml(drawing)
    {
        m_xml.setNamespaceProcessing(false);
    }

    DrawingCheck check()
    {
        while (!m_xml.atEnd() && m_result.failure.isEmpty())
            take(m_xml.readNext());
        // The renderer may make something of a text that this parser does not understand, so it is
        // refused.
        if (m_result.failure.isEmpty() && m_xml.hasError())
            m_result.failure =
                QCoreApplication::translate("QPictureDocument", "The drawing is damaged.");
        if (m_result.failure.isEmpty() && countOf({}) > s_mostElements)
            m_result.failure = isTooMuch();
        return m_result;
    }

private:
    // What is rendered for an element of that name, or for the whole drawing.
    struct Group {
        qint64 elements = 0;
        QList<QString> uses{};
    };

    void take(QXmlStreamReader::TokenType token)
    {
        if (token == QXmlStreamReader::StartElement)
            takeElement();
        else if (token == QXmlStreamReader::EndElement)
            m_open.pop_back();
        else if (token == QXmlStreamReader::Characters)
            refuseIf(m_isStyle && leadsOut(m_xml.text().toString()));
        else if (token == QXmlStreamReader::ProcessingInstruction)
            refuseIf(m_xml.processingInstructionTarget() == u"xml-stylesheet");
        else if (token == QXmlStreamReader::DTD)
            takeEntities();
        if (token == QXmlStreamReader::StartElement || token == QXmlStreamReader::EndElement)
            m_isStyle = token == QXmlStreamReader::StartElement &&
                        withoutPrefix(m_xml.qualifiedName()) == u"style";
    }

    void takeEntities()
    {
        const QXmlStreamEntityDeclarations entities = m_xml.entityDeclarations();
        refuseIf(std::any_of(entities.begin(), entities.end(), [](const auto &entity) {
            return !entity.systemId().isEmpty() || !entity.publicId().isEmpty();
        }));
    }

    void takeElement()
    {
        const QStringView name = withoutPrefix(m_xml.qualifiedName());
        QString id;
        for (const QXmlStreamAttribute &attribute : m_xml.attributes()) {
            const QStringView key = withoutPrefix(attribute.qualifiedName());
            const QString value = attribute.value().toString();
            if (key == u"id")
                id = value;
            else if (key.compare(u"href", Qt::CaseInsensitive) == 0)
                takeReference(name, value);
            else
                refuseIf(leadsOut(value));
        }
        m_open.push_back(id);
        if (static_cast<qsizetype>(m_open.size()) > s_deepest ||
            m_groups.value({}).elements > s_mostElements)
            m_result.failure = isTooMuch();
        ++m_groups[{}].elements;
        for (const QString &around : openIds())
            ++m_groups[around].elements;
    }

    // The renderer does not follow links.
    void takeReference(QStringView element, const QString &value)
    {
        if (value.startsWith(u'#')) {
            m_groups[{}].uses.append(value.mid(1));
            for (const QString &around : openIds())
                m_groups[around].uses.append(value.mid(1));
        } else if (value.startsWith(u"data:")) {
            takePicture(value);
        } else {
            refuseIf(element != u"a");
        }
    }

    void takePicture(const QString &value)
    {
        const QString mark = u"base64,"_s;
        const qsizetype start = value.lastIndexOf(mark);
        QByteArray bytes = start < 0
                               ? QByteArray()
                               : QByteArray::fromBase64(value.mid(start + mark.size()).toLatin1());
        QBuffer buffer(&bytes);
        QImageReader reader(&buffer);
        // Not even the size is read, because for a drawing the toolkit would parse the whole file.
        if (reader.format().startsWith("svg")) {
            refuseIf(true);
            return;
        }
        const QSize size = reader.size();
        m_result.pixels += qint64{size.width()} * size.height();
    }

    QSet<QString> openIds() const
    {
        QSet<QString> result(m_open.begin(), m_open.end());
        result.remove({});
        return result;
    }

    void refuseIf(bool isOutside)
    {
        if (isOutside)
            m_result.failure = readsOthers();
    }

    // The number of rendered elements, up to slightly more than the limit. An element that uses
    // itself exceeds the limit.
    qint64 countOf(const QString &id)
    {
        if (m_around.contains(id) || m_around.size() > s_deepest)
            return s_mostElements + 1;
        if (const auto known = m_counts.constFind(id); known != m_counts.constEnd())
            return *known;
        const Group group = m_groups.value(id);
        m_around.insert(id);
        qint64 count = group.elements;
        for (const QString &used : group.uses) {
            if (count > s_mostElements)
                break;
            count += countOf(used);
        }
        m_around.remove(id);
        m_counts.insert(id, count);
        return count;
    }

    QXmlStreamReader m_xml;
    DrawingCheck m_result;
    bool m_isStyle = false;
    std::vector<QString> m_open;      // names of the open elements, from the outermost
    QHash<QString, Group> m_groups;   // by name; the empty name is the whole drawing
    QHash<QString, qint64> m_counts;  // number of rendered elements of each group
    QSet<QString> m_around;           // the groups that are being counted
};

}  // namespace

DrawingCheck checkDrawing(const QByteArray &text) { return Reader(text).check(); }

std::optional<QByteArray> drawingText(const QByteArray &content)
{
    if (!content.startsWith("\x1f\x8b"))
        return content.size() <= s_longestText ? std::optional(content) : std::nullopt;
    z_stream stream{};
    constexpr int packedFile = 15 + 16;  // the largest window, and a header
    if (inflateInit2(&stream, packedFile) != Z_OK)
        return {};
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(content.constData()));
    stream.avail_in = static_cast<uInt>(content.size());
    QByteArray result;
    QByteArray piece(1 << 16, '\0');
    int state = Z_OK;
    while (state == Z_OK && result.size() <= s_longestText) {
        stream.next_out = reinterpret_cast<Bytef *>(piece.data());
        stream.avail_out = static_cast<uInt>(piece.size());
        state = inflate(&stream, Z_NO_FLUSH);
        result.append(piece.constData(), piece.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    return state == Z_STREAM_END && result.size() <= s_longestText ? std::optional(result)
                                                                   : std::nullopt;
}
