#include "recognition/secrets.h"

#include "recognition/linedirection.h"
#include "recognition/wordmending.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <optional>

using namespace Qt::StringLiterals;
using Kind = Secret::Kind;

namespace {

constexpr int s_border = 2;       // pixels around the letters that are covered as well
constexpr int s_labelReach = 28;  // letters before a number that say what it is
constexpr int s_mostKeyLines = 100;

// A part of a line's text.
struct Span {
    qsizetype begin = 0;
    qsizetype end = 0;

    bool meets(const Span &other) const { return begin < other.end && other.begin < end; }
};

struct Found {
    Kind kind = Kind::Key;
    Span span{};
};

// A line as its words with one blank between them.
class LineText
{
public:
    // `blank` is blankOf() all lines.
    LineText(const ReadLine &line, double blank)
        : m_words(line.words), m_isTorn(tornWords(line.words, blank))
    {
        for (const ReadWord &word : line.words) {
            if (!m_text.isEmpty())
                m_text += u' ';
            m_spans.append({m_text.size(), m_text.size() + word.text.size()});
            m_text += word.text;
        }
    }

    const QString &text() const { return m_text; }
    QString text(const Span &span) const { return m_text.mid(span.begin, span.end - span.begin); }
    Span all() const { return {0, m_text.size()}; }
    // The span and the rest of all words of which a part is in it, torn ones too.
    Span wholeWords(const Span &span) const
    {
        Span result = span;
        for (qsizetype i = 0; i < m_spans.size(); ++i) {
            const bool isTorn = m_isTorn[i] && m_spans[i - 1].end <= result.end &&
                                m_spans[i - 1].end > result.begin;
            if (isTorn || m_spans[i].meets(result))
                result.end = std::max(result.end, m_spans[i].end);
        }
        for (qsizetype i = m_spans.size(); i-- > 0;) {
            const bool isTorn =
                i + 1 < m_spans.size() && m_isTorn[i + 1] && m_spans[i + 1].meets(result);
            if (isTorn || m_spans[i].meets(result))
                result.begin = std::min(result.begin, m_spans[i].begin);
        }
        return result;
    }
    // What covers all words of which a part is in the span.
    QRect area(const Span &span) const
    {
        QRect result;
        for (qsizetype i = 0; i < m_words.size(); ++i) {
            if (m_spans[i].meets(span))
                result |= m_words[i].box;
        }
        return result.adjusted(-s_border, -s_border, s_border, s_border);
    }

private:
    const QList<ReadWord> &m_words;
    QString m_text;
    QList<Span> m_spans;
    QList<bool> m_isTorn;
};

bool matches(const QRegularExpression &pattern, const QString &text)
{
    return pattern.match(text).hasMatch();
}

QRegularExpression ignoringCase(const QString &pattern)
{
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption |
                                           QRegularExpression::UseUnicodePropertiesOption);
}

// What a letter that was read for a digit may have been; null for any other.
QChar digitOf(QChar letter)
{
    static const QString s_letters = u"OoQDlI|i]SBZ"_s;
    static const QString s_digits = u"000011111582"_s;
    if (letter >= u'0' && letter <= u'9')
        return letter;
    const qsizetype place = s_letters.indexOf(letter);
    return place < 0 ? QChar() : s_digits[place];
}

QString digitsOf(const QString &text)
{
    QString result;
    for (const QChar letter : text) {
        if (const QChar digit = digitOf(letter); !digit.isNull())
            result += digit;
    }
    return result;
}

bool isOfNumber(const QString &word)
{
    static const QString s_between = u"+()-./\u2013"_s;
    qsizetype digits = 0;
    qsizetype letters = 0;
    for (const QChar letter : word) {
        if (letter >= u'0' && letter <= u'9')
            ++digits;
        else if (!digitOf(letter).isNull())
            ++letters;
        else if (!s_between.contains(letter))
            return false;
    }
    return digits > 0 || letters == 0;
}

bool hasLuhnDigit(const QString &digits)
{
    int sum = 0;
    for (qsizetype i = 0; i < digits.size(); ++i) {
        const int digit = digits[digits.size() - 1 - i].digitValue();
        const int counted = i % 2 == 0 ? digit : 2 * digit;
        sum += counted > 9 ? counted - 9 : counted;
    }
    return sum % 10 == 0;
}

// Of the lengths and beginnings that are given out.
bool isCard(const QString &text, const QString &digits, const QString &label)
{
    constexpr qsizetype s_shortest = 13;
    constexpr qsizetype s_longest = 19;
    static const QRegularExpression s_issued(
        u"^(4\\d{12}(\\d{3}){0,2}|5[1-5]\\d{14}|2[2-7]\\d{14}|3[47]\\d{13}|3[068]\\d{12}|35\\d{14}|6\\d{15,18})$"_s);
    static const QRegularExpression s_label =
        ignoringCase(u"\\b(card|karte|visa|mastercard|maestro|amex|kreditkarte|卡)"_s);
    static const QRegularExpression s_grouped(u"^\\S{4}([ -]\\S{4}){3}$"_s);
    // With its label, or grouped as on a card, it is one though a digit was read wrong.
    if (matches(s_label, label))
        return digits.size() >= s_shortest && digits.size() <= s_longest;
    return matches(s_issued, digits) && (hasLuhnDigit(digits) || matches(s_grouped, text));
}

bool isTelephone(const QString &text, const QString &digits, const QString &label)
{
    static const QRegularExpression s_date(
        u"(?<![\\d./-])(\\d{1,2}([./-])\\d{1,2}\\2\\d{2,4}|\\d{4}([./-])\\d{1,2}\\3\\d{1,2})(?![./-]?\\d)"_s);
    static const QRegularExpression s_label = ignoringCase(
        u"(\\b(tel|phone|telephone|telefon|mobile?|handy|cell|fax|call|dial|ring|sms|whatsapp|hotline|rufnummer)\\b|电话|手机|传真)"_s);
    static const QRegularExpression s_otherLabel = ignoringCase(
        u"(\\b(orders?|invoice|bestellung|rechnung|isbn|issn|ean|article|artikel|item|part|ticket|serial|sku|build|version|customer|kunde|ref|reference|case|id|tracking|parcel|doi)\\b|订单)"_s);
    static const QRegularExpression s_american(
        u"^(1[ .-])?\\(?\\d{3}\\)?[ .-]{1,2}\\d{3}[ .-]\\d{4}$"_s);
    static const QRegularExpression s_national(u"^\\(?0\\d"_s);
    static const QRegularExpression s_grouped(u"\\d[ ()/.\u2013-]+\\d"_s);
    const qsizetype count = digits.size();
    if (count < 6 || count > 15 || matches(s_date, text))
        return false;
    if (matches(s_label, label))
        return true;
    if (matches(s_otherLabel, label))
        return false;
    if (text.contains(u'+'))
        return count >= 8 && text.indexOf(u'+') <= 1;
    if (matches(s_american, text))
        return true;
    return matches(s_national, text) && count >= 9 && count <= 14 && matches(s_grouped, text);
}

std::optional<Kind> kindOfNumber(const QString &text, const QString &label)
{
    const QString digits = digitsOf(text);
    if (isCard(text, digits, label))
        return Kind::Card;
    return isTelephone(text, digits, label) ? std::optional(Kind::Telephone) : std::nullopt;
}

// Whether nothing but a blank is between a word and the one before.
bool isNext(const LineText &line, const QList<Span> &words, qsizetype place)
{
    return line.text({words[place - 1].end, words[place].begin}) == u" ";
}

// Each run of words that may be one number is tried in all its parts, the longest first.
void findNumbers(const LineText &line, QList<Found> &found)
{
    static const QRegularExpression s_word(u"[^\\s:;=,\"']+"_s);
    constexpr qsizetype s_mostWords = 10;
    QList<Span> words;
    for (const QRegularExpressionMatch &match : s_word.globalMatch(line.text()))
        words.append({match.capturedStart(), match.capturedEnd()});
    for (qsizetype first = 0; first < words.size(); ++first) {
        qsizetype end = first;
        while (end < words.size() && end - first < s_mostWords &&
               isOfNumber(line.text(words[end])) && (end == first || isNext(line, words, end)))
            ++end;
        for (; end > first; --end) {
            Span span{words[first].begin, words[end - 1].end};
            QString text = line.text(span);
            while (!text.isEmpty() && u".-/)"_s.contains(text.back()) && !text.contains(u'('))
                text.chop(1);
            const QString label = line.text().left(span.begin).right(s_labelReach);
            if (const std::optional<Kind> kind = kindOfNumber(text, label)) {
                found.append({*kind, span});
                first = end - 1;
                break;
            }
        }
    }
}

enum class Letter { Lower, Upper, Digit, Other };

Letter classOf(QChar letter)
{
    if (letter >= u'a' && letter <= u'z')
        return Letter::Lower;
    if (letter >= u'A' && letter <= u'Z')
        return Letter::Upper;
    return letter >= u'0' && letter <= u'9' ? Letter::Digit : Letter::Other;
}

// Whether chance put the letters together: in words and names small letters follow small letters,
// and digits digits.
bool looksRandom(const QString &text)
{
    constexpr int s_shortest = 16;
    constexpr int s_shortestOfTwo = 20;
    constexpr int s_shortestHex = 28;
    constexpr double s_changes = 0.3;
    std::array<int, 4> counts{};
    int changes = 0;
    int hex = 0;
    Letter before = Letter::Other;
    for (const QChar letter : text) {
        const Letter now = classOf(letter);
        ++counts[static_cast<size_t>(now)];
        if (now == Letter::Other)
            continue;
        changes += before != Letter::Other && before != now ? 1 : 0;
        hex += now == Letter::Digit || u"abcdefABCDEFOlIS"_s.contains(letter) ? 1 : 0;
        before = now;
    }
    const auto [lower, upper, digits, others] = counts;
    const int all = lower + upper + digits;
    if (all < s_shortest || digits < 2 || lower + upper < 2 || others > all / 4)
        return false;
    if (hex == all && all >= s_shortestHex)
        return digits >= all / 4;
    const bool isMixed = lower > 1 && upper > 1;
    return changes >= s_changes * all && (isMixed || (all >= s_shortestOfTwo && others == 0));
}

// What a key is made of, and of what a word of a text is not.
bool isOfKey(const QString &word)
{
    static const QRegularExpression s_letters(u"^[A-Za-z0-9+/_=.|-]{4,}$"_s);
    static const QRegularExpression s_mixed(u"[A-Za-z][0-9]|[0-9][A-Za-z]"_s);
    return matches(s_letters, word) && matches(s_mixed, word);
}

// Recognition puts blanks into long words, so that neighbours may belong together.
void findRandom(const LineText &line, QList<Found> &found)
{
    static const QRegularExpression s_word(u"[^\\s.:;,\"'<>(){}&?\\[\\]]+"_s);
    static const QRegularExpression s_named(u"^[A-Za-z_.-]{2,}=(?!$)"_s);
    QList<Span> words;
    for (const QRegularExpressionMatch &match : s_word.globalMatch(line.text())) {
        const QRegularExpressionMatch name = s_named.match(match.captured());
        words.append({match.capturedStart() + name.capturedLength(), match.capturedEnd()});
    }
    for (qsizetype first = 0; first < words.size(); ++first) {
        qsizetype end = first;
        QString joined;
        while (end < words.size() && isOfKey(line.text(words[end])) &&
               (end == first || isNext(line, words, end)))
            joined += line.text(words[end++]);
        if (end > first && looksRandom(joined)) {
            found.append({Kind::Key, {words[first].begin, words[end - 1].end}});
            first = end - 1;
        } else if (looksRandom(line.text(words[first]))) {
            found.append({Kind::Key, words[first]});
        }
    }
}

struct Pattern {
    Kind kind = Kind::Key;
    QRegularExpression expression{};
    int part = 0;  ///< the group that is the secret
};

const QList<Pattern> &patterns()
{
    static const QString s_known =
        u"(?:com|org|net|edu|gov|info|example|test|eu|de|at|ch|fr|it|es|nl|pl|uk|us|io|dev|app|cn|jp)\\b"_s;
    // Blanks only before an ending that is well known: the next sentence is none.
    static const QString s_domain =
        u"[\\w-]+(?:[.,][\\w-]+)*(?:[.,]| ?[.,] ?(?="_s + s_known + u"))"_s;
    static const QString s_secretWord =
        u"(?:pass(?:word|wd|phrase|code|wort)?|pwd|kennwort|pin|secret(?:[ _-]?key)?|(?:[a-z]+[_-])*(?:token|secret|password|pwd)|(?:api|access|private|auth|license|encryption|signing|account|client)[ _-]?(?:key|token|secret)|密码|口令|密钥)"_s;
    static const QList<Pattern> s_patterns{
        // Before addresses, for which its end may be taken.
        {Kind::Password, ignoringCase(u"\\w+://[^\\s/:@]+:[^\\s/@]+ ?[^\\s/@]*@\\S+"_s)},
        {Kind::MailAddress,
         ignoringCase(u"(?:\\S*_ )?[\\w.%+-]+ ?@ ?"_s + s_domain + u"[a-z0-9]{2,24}\\b"_s)},
        // The sign as it is read wrong.
        {Kind::MailAddress,
         QRegularExpression(
             u"\\b[\\w.%+-]*[a-z0-9]{2}(?:©|®|€|¢|\\(?[aA][tT]\\)|\\[at\\]|\\(?Q\\)?(?=[a-z]))"_s +
             s_domain + s_known)},
        {Kind::Password,
         ignoringCase(
             u"(?<![a-z])"_s + s_secretWord +
             u"[\"']? ?(?:[=:\uff1a]|=>|:=|\\bis\\b|\\blautet\\b) ?((?:\"[^\"]{3,}\"?)|(?:'[^']{3,}'?)|\\S{3,})"_s),
         1},
        {Kind::Password, ignoringCase(u"--?(?:password|token|secret|passphrase)[ =](\\S{3,})"_s),
         1},
        {Kind::Key, ignoringCase(u"\\b(?:bearer|basic|apikey) ((?=[^\\s]*\\d)[\\w.~+/=-]{12,})"_s),
         1},
        {Kind::Key,
         QRegularExpression(
             u"\\bA[KSGRN][I1lPO][AD](?=\\S*\\d)[A-Z0-9/|\\[\\]]{6,}(?: [A-Z0-9]*\\d[A-Z0-9]*)*\\b"_s)},
        {Kind::Key,
         QRegularExpression(
             u"\\b(?:gh[pousr]|github ?[_ ]pat|glpat|npm|xox[abeprs]|[srp]k[_ -](?:live|test)|sk|pypi|shpat|dop[_ ]v1|hf|SG)[_. -][A-Za-z0-9][\\w-]{14,}(?: [\\w-]*\\d[\\w-]*)?"_s)},
        {Kind::Key, QRegularExpression(u"\\bAIza[\\w-]{20,}"_s)},
        {Kind::Key,
         QRegularExpression(u"\\bey[Jj\\]][A-Za-z0-9_-]{6,}(?: ?[.,] ?[A-Za-z0-9_-]{6,}){1,2}"_s)},
    };
    return s_patterns;
}

// Of what stands behind "password:" in a text about passwords.
bool isPlainWord(const QString &value)
{
    static const QRegularExpression s_plain = ignoringCase(
        u"^(required|optional|none|null|nil|true|false|yes|no|not|empty|unset|changed|invalid|valid|wrong|expired|incorrect|hidden|string|str|text|the|a|an|your|is|must|please|enter|forgotten|forgot|reset|protected|missing|[*\u2022\u25cf.x#_-]+)[.,;:!?)\"']*$"_s);
    return matches(s_plain, value);
}

void findPatterns(const LineText &line, QList<Found> &found)
{
    for (const Pattern &pattern : patterns()) {
        for (const QRegularExpressionMatch &match : pattern.expression.globalMatch(line.text())) {
            if (pattern.part == 0 || !isPlainWord(match.captured(pattern.part)))
                found.append(
                    {pattern.kind,
                     {match.capturedStart(pattern.part), match.capturedEnd(pattern.part)}});
        }
    }
}

// Each part of the line once: what was found first says what it is, and as much as any found is
// covered.
QList<Found> merged(const QList<Found> &found)
{
    QList<Found> result;
    for (Found next : found) {
        const auto apart = std::partition(result.begin(), result.end(), [&](const Found &other) {
            return !other.span.meets(next.span);
        });
        for (auto met = apart; met != result.end(); ++met) {
            next.kind = met->kind;
            next.span = {std::min(next.span.begin, met->span.begin),
                         std::max(next.span.end, met->span.end)};
        }
        result.erase(apart, result.end());
        result.append(next);
    }
    std::sort(result.begin(), result.end(),
              [](const Found &a, const Found &b) { return a.span.begin < b.span.begin; });
    return result;
}

// A line of one word without an end, as keys are broken into, as far as it was read well; empty for
// others.
QString keyLine(const ReadLine &line, double blank)
{
    constexpr qsizetype s_shortest = 20;
    if (line.words.isEmpty() || tornWords(line.words, blank).count(false) > 1)
        return {};
    QString joined;
    for (const ReadWord &word : line.words)
        joined += word.text;
    const auto ofKey = std::count_if(joined.begin(), joined.end(), [](QChar letter) {
        return classOf(letter) != Letter::Other || u"+/=|"_s.contains(letter);
    });
    const bool isOne = joined.size() >= s_shortest && ofKey * 20 >= joined.size() * 19;
    return isOne ? joined : QString();
}

// How many lines from this one on are a key whose head was not read: a line of dashes hardly looks
// like text.
qsizetype bareKeyLines(const QList<ReadLine> &lines, qsizetype first, double blank)
{
    bool isRandom = false;
    qsizetype end = first;
    for (; end < lines.size(); ++end) {
        const QString letters = keyLine(lines[end], blank);
        if (letters.isEmpty())
            break;
        isRandom = isRandom || looksRandom(letters);
    }
    return isRandom && end - first > 1 ? end - first : 0;
}

// How many lines from this one on are a block with a private key; 0 for none.
qsizetype keyLines(const QList<ReadLine> &lines, qsizetype first, double blank)
{
    static const QRegularExpression s_begin = ignoringCase(u"BEGIN ?[A-Z0-9 ]*PRIVATE ?KEY"_s);
    static const QRegularExpression s_end =
        ignoringCase(u"(END ?[A-Z0-9 ]*(PRIVATE|KEY)|KEY ?[-\u2014]{2})"_s);
    if (!matches(s_begin, lines[first].text))
        return bareKeyLines(lines, first, blank);
    const qsizetype most = std::min(lines.size(), first + s_mostKeyLines);
    // Whatever was read between both belongs to it.
    for (qsizetype end = first + 1; end < most; ++end) {
        if (matches(s_end, lines[end].text))
            return end + 1 - first;
    }
    // The end was not read: as far as it looks like a key, with signs for which letters are taken.
    const auto looksInside = [](const ReadLine &line) {
        const auto letters = std::count_if(line.text.begin(), line.text.end(), [](QChar letter) {
            return letter.isLetterOrNumber() || u"+/="_s.contains(letter);
        });
        return line.text.size() >= 8 && letters * 10 >= line.text.size() * 8 &&
               line.words.size() <= 4;
    };
    qsizetype end = first + 1;
    while (end < most && looksInside(lines[end]))
        ++end;
    return end - first;
}

// Each line as long as the whole block: what was not read at its end belongs to it, too.
Secret keyBlock(const QList<ReadLine> &lines, double blank)
{
    Secret result{.kind = Kind::Key, .text = lines.first().text};
    QRect all;
    for (const ReadLine &line : lines) {
        const LineText text(line, blank);
        result.areas.append(text.area(text.all()));
        all |= result.areas.last();
    }
    const auto longest =
        std::max_element(lines.begin(), lines.end(), [](const ReadLine &a, const ReadLine &b) {
            return a.words.size() < b.words.size();
        });
    const LineDirection direction(longest->words);
    for (QRect &area : result.areas)
        area = direction.stretched(area, all);
    return result;
}

}  // namespace

QList<Secret> secretsIn(const QList<ReadLine> &lines)
{
    QList<Secret> result;
    const double blank = blankOf(lines);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (const qsizetype count = keyLines(lines, i, blank); count > 0) {
            result.append(keyBlock(lines.mid(i, count), blank));
            i += count - 1;
            continue;
        }
        const LineText line(lines[i], blank);
        QList<Found> found;
        findPatterns(line, found);
        findNumbers(line, found);
        findRandom(line, found);
        for (Found &one : found)
            one.span = line.wholeWords(one.span);
        for (const Found &one : merged(found))
            result.append({one.kind, line.text(one.span), {line.area(one.span)}});
    }
    return result;
}
