#include "config/nametemplate.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype s_mostBytes = 255;
constexpr qsizetype s_mostLetters = 1024;  // of a value that are looked at
constexpr int s_mostDigits = 9;

// What would lead into another folder, or can't be seen, or turns around what stands beside it.
bool isUnfit(QChar c)
{
    const bool turnsAround =
        (c >= u'\u202a' && c <= u'\u202e') || (c >= u'\u2066' && c <= u'\u2069');
    return c == u'/' || turnsAround || c.category() == QChar::Other_Control;
}

// Alone it names no picture, and at the end of a name it only looks odd before the ending.
bool saysNothing(QChar c) { return c == u'.' || c.isSpace(); }

QString fit(QString text)
{
    text = text.left(s_mostLetters).simplified();
    std::replace_if(text.begin(), text.end(), isUnfit, u'_');
    return text;
}

qsizetype bytesOf(QStringView text) { return text.toUtf8().size(); }

// As many whole characters, with their accents, as that many bytes hold.
QString cutTo(const QString &text, qsizetype bytes)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (qsizetype next = finder.toNextBoundary(); next >= 0; next = finder.toNextBoundary()) {
        bytes -= bytesOf(QStringView(text).sliced(end, next - end));
        if (bytes < 0)
            break;
        end = next;
    }
    return text.left(end);
}

}  // namespace

NameTemplate::NameTemplate(const QString &text)
{
    parse(text);
    if (!m_fault.isEmpty())
        m_pieces.clear();
}

void NameTemplate::parse(const QString &text)
{
    QString plain;
    const auto addPlain = [&] {
        if (!plain.isEmpty())
            m_pieces.append({Kind::Text, std::exchange(plain, {})});
    };
    for (qsizetype i = 0; i < text.size() && m_fault.isEmpty(); ++i) {
        const QChar c = text[i];
        const bool isBrace = c == u'{' || c == u'}';
        if (!isBrace || (i + 1 < text.size() && text[i + 1] == c)) {
            plain += c;
            i += isBrace ? 1 : 0;
            continue;
        }
        const qsizetype end = text.indexOf(u'}', i);
        const QString word = text.sliced(i + 1, std::max<qsizetype>(end - i - 1, 0));
        if (c == u'}') {
            m_fault = tr("Character %1: \"}\" without a \"{\" before it. Double it to have the "
                         "brace itself.")
                          .arg(i + 1);
        } else if (end < 0 || word.contains(u'{')) {
            m_fault = tr("Character %1: \"{\" without a \"}\" behind it. Double it to have the "
                         "brace itself.")
                          .arg(i + 1);
        } else {
            addPlain();
            addWord(word, i);
            i = end;
        }
    }
    addPlain();
}

void NameTemplate::addWord(const QString &word, qsizetype place)
{
    struct Known {
        QLatin1StringView name;
        Kind kind;
    };
    static constexpr std::array s_known{Known{"date"_L1, Kind::Date}, Known{"time"_L1, Kind::Time},
                                        Known{"counter"_L1, Kind::Counter},
                                        Known{"application"_L1, Kind::Application},
                                        Known{"title"_L1, Kind::Title}};
    const QString name = word.section(u':', 0, 0);
    const QString format = word.section(u':', 1);
    const auto *const known = std::find_if(s_known.begin(), s_known.end(),
                                           [&](const Known &k) { return k.name == name; });
    if (known == s_known.end()) {
        m_fault = tr("Character %1: {%2} is not known.").arg(place + 1).arg(name);
        return;
    }
    const bool isFormatted = word.contains(u':');
    const bool isMoment = known->kind == Kind::Date || known->kind == Kind::Time;
    // Without its end a quote would take all that follows as text.
    if (isMoment && format.count(u'\'') % 2 != 0) {
        m_fault = tr("Character %1: the quote in {%2} is not closed.").arg(place + 1).arg(word);
        return;
    }
    bool isRight = !isFormatted || (isMoment && !format.isEmpty());
    if (isFormatted && known->kind == Kind::Counter) {
        const int digits = format.toInt(&isRight);
        isRight = isRight && digits >= 1 && digits <= s_mostDigits;
    }
    if (!isRight)
        m_fault = tr("Character %1: {%2} takes no \"%3\".").arg(place + 1).arg(name, u':' + format);
    m_pieces.append({known->kind, format});
}

QString NameTemplate::valueOf(const Piece &piece, const Values &values, int counter)
{
    const auto formatOr = [&](const QString &usual) {
        return piece.text.isEmpty() ? usual : piece.text;
    };
    switch (piece.kind) {
    case Kind::Date:
        return values.time.toString(formatOr(u"yyyy-MM-dd"_s));
    case Kind::Time:
        return values.time.toString(formatOr(u"HH-mm-ss"_s));
    case Kind::Counter:
        return QString::number(counter).rightJustified(piece.text.toInt(), u'0');
    case Kind::Application:
        return fit(values.application);
    case Kind::Title:
        return fit(values.title);
    case Kind::Text:
        break;
    }
    return piece.text;
}

QString NameTemplate::fileName(const Values &values, int counter, const QString &ending) const
{
    QStringList texts;
    for (const Piece &piece : m_pieces)
        texts.append(valueOf(piece, values, counter));
    const auto unnamed = [&] {
        return NameTemplate(u"{date} {time}"_s).fileName(values, counter, ending);
    };
    const QString whole = texts.join(QString());
    if (std::all_of(whole.begin(), whole.end(), saysNothing))
        return unnamed();

    const auto place = std::find_if(m_pieces.begin(), m_pieces.end(),
                                    [](const Piece &piece) { return piece.kind == Kind::Counter; });
    qsizetype counted = place - m_pieces.begin();
    if (place == m_pieces.end()) {
        texts.append(counter > 1 ? u" (%1)"_s.arg(counter) : QString());
        counted = texts.size() - 1;
    }
    // The longest gives way to the others, and all of them to what makes the name another one.
    const auto bytes = [&] {
        return std::accumulate(
            texts.begin(), texts.end(), bytesOf(ending) + 1,
            [](qsizetype sum, const QString &text) { return sum + bytesOf(text); });
    };
    for (qsizetype excess = bytes() - s_mostBytes; excess > 0; excess = bytes() - s_mostBytes) {
        qsizetype longest = counted == 0 ? 1 : 0;
        for (qsizetype i = 0; i < texts.size(); ++i) {
            if (i != counted && texts[i].size() > texts[longest].size())
                longest = i;
        }
        texts[longest] = cutTo(texts[longest], bytesOf(texts[longest]) - excess);
    }
    QString name = fit(texts.join(QString()));
    while (!name.isEmpty() && saysNothing(name.back()))
        name.chop(1);
    if (name.isEmpty())
        return unnamed();
    if (name.startsWith(u'.'))
        name[0] = u'_';
    return name + u'.' + ending;
}
