#include "recognition/textreader.h"

#include "base/log.h"
#include "recognition/runtimelibrary.h"
#include "recognition/textground.h"
#include "recognition/wordmending.h"

#include <QDeadlineTimer>
#include <QLibrary>
#include <QLocale>
#include <QRegularExpression>

#include <new>

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <memory>
#include <numeric>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Letters of 11 pixels are read with the fewest errors when they are two to three times as large,
// and larger ones no worse.
constexpr qreal s_enlarged = 2.5;
// Blank space around a part that was cut off close to its text.
constexpr int s_margin = 10;
// What is read at once, before it is enlarged, which takes 25 bytes a pixel for a moment; the
// library takes no side longer than 32,767. What is larger is cut where the fewest letters are.
constexpr QSize s_mostAtOnce(4'000, 2'200);
// A cut is at most this part of the side before the latest place for it.
constexpr qreal s_cutRoom = 0.25;
// A few letters that the library trusts less are a drawing more often than text. It trusts keys and
// tokens, which are in no dictionary, no more than that.
constexpr float s_leastConfidence = 25;
constexpr int s_fewLetters = 3;
// Text that is upside down is taken for letters that are trusted less than those of upright text.
constexpr qreal s_leastUpright = 60;
constexpr qsizetype s_leastToDoubt = 8;
// Each language takes as long again.
constexpr int s_mostLanguages = 2;

constexpr int s_automatic = 3;  // how the library looks for text: blocks, in reading order
constexpr int s_sparse = 11;    // any letters anywhere
constexpr int s_byLine = 2;
constexpr int s_byWord = 3;
constexpr int s_byBlock = 0;

// The library's functions, as it declares them.
struct Tesseract {
    const char *(*version)() = nullptr;
    void *(*create)() = nullptr;
    void (*destroy)(void *) = nullptr;
    int (*init)(void *, const char *, const char *) = nullptr;
    char **(*languages)(const void *) = nullptr;
    void (*deleteTexts)(char **) = nullptr;
    void (*deleteText)(const char *) = nullptr;
    int (*setVariable)(void *, const char *, const char *) = nullptr;
    void (*setMode)(void *, int) = nullptr;
    void (*setImage)(void *, const unsigned char *, int, int, int, int) = nullptr;
    void (*setResolution)(void *, int) = nullptr;
    int (*recognize)(void *, void *) = nullptr;
    void *(*createMonitor)() = nullptr;
    void (*deleteMonitor)(void *) = nullptr;
    void (*setCancel)(void *, bool (*)(void *, int)) = nullptr;
    void (*setCancelThis)(void *, void *) = nullptr;
    int (*progress)(void *) = nullptr;
    void *(*results)(void *) = nullptr;
    void (*deleteResults)(void *) = nullptr;
    int (*next)(void *, int) = nullptr;
    char *(*textOf)(const void *, int) = nullptr;
    float (*confidence)(const void *, int) = nullptr;
    const void *(*pageOf)(const void *) = nullptr;
    int (*box)(const void *, int, int *, int *, int *, int *) = nullptr;
    int (*begins)(const void *, int) = nullptr;
};

std::optional<Tesseract> openedLibrary(const QStringList &names)
{
    RuntimeLibrary library(names);
    Tesseract result;
    library.resolve(result.version, "TessVersion");
    library.resolve(result.create, "TessBaseAPICreate");
    library.resolve(result.destroy, "TessBaseAPIDelete");
    library.resolve(result.init, "TessBaseAPIInit3");
    library.resolve(result.languages, "TessBaseAPIGetAvailableLanguagesAsVector");
    library.resolve(result.deleteTexts, "TessDeleteTextArray");
    library.resolve(result.deleteText, "TessDeleteText");
    library.resolve(result.setVariable, "TessBaseAPISetVariable");
    library.resolve(result.setMode, "TessBaseAPISetPageSegMode");
    library.resolve(result.setImage, "TessBaseAPISetImage");
    library.resolve(result.setResolution, "TessBaseAPISetSourceResolution");
    library.resolve(result.recognize, "TessBaseAPIRecognize");
    library.resolve(result.createMonitor, "TessMonitorCreate");
    library.resolve(result.deleteMonitor, "TessMonitorDelete");
    library.resolve(result.setCancel, "TessMonitorSetCancelFunc");
    library.resolve(result.setCancelThis, "TessMonitorSetCancelThis");
    library.resolve(result.progress, "TessMonitorGetProgress");
    library.resolve(result.results, "TessBaseAPIGetIterator");
    library.resolve(result.deleteResults, "TessResultIteratorDelete");
    library.resolve(result.next, "TessResultIteratorNext");
    library.resolve(result.textOf, "TessResultIteratorGetUTF8Text");
    library.resolve(result.confidence, "TessResultIteratorConfidence");
    library.resolve(result.pageOf, "TessResultIteratorGetPageIteratorConst");
    library.resolve(result.box, "TessPageIteratorBoundingBox");
    library.resolve(result.begins, "TessPageIteratorIsAtBeginningOf");
    // That one ends the process where the locale's numbers are not English.
    const bool isUsable = library.isComplete() && !QByteArray(result.version()).startsWith("4.0");
    return isUsable ? std::optional(result) : std::nullopt;
}

// The library shares each line out among four threads, which takes several times as long as one of
// them alone where they wait for a processor. It asks no one how many there should be; but within
// that many levels of sharing out, none, there is no more than one. It holds for this thread.
void workAlone()
{
    using SetLevels = void (*)(int);
    if (const auto set = reinterpret_cast<SetLevels>(
            QLibrary::resolve(u"libgomp.so.1"_s, "omp_set_max_active_levels")))
        set(0);
}

QString packageOf(const QString &code)
{
    return u"tesseract-ocr-"_s + QString(code).replace(u'_', u'-');
}

// A blank between two characters of these scripts is none of the text's.
QString joined(QString line)
{
    static const QRegularExpression s_blank(
        uR"((?<=[\p{Han}\p{Hiragana}\p{Katakana}、。，！？：；]) +(?=[\p{Han}\p{Hiragana}\p{Katakana}、。，！？：；]))"_s);
    return line.remove(s_blank).trimmed();
}

// How much changes from each pixel to the next across the way of a cut there.
qint64 inkAt(const QImage &grey, int place, Qt::Orientation along)
{
    qint64 result = 0;
    if (along == Qt::Horizontal) {
        const uchar *line = grey.constScanLine(place);
        for (int x = 1; x < grey.width(); ++x)
            result += std::abs(line[x] - line[x - 1]);
    } else {
        for (int y = 1; y < grey.height(); ++y)
            result += std::abs(grey.constScanLine(y)[place] - grey.constScanLine(y - 1)[place]);
    }
    return result;
}

// Where the next cut is, at most `most` after `begin`: as late as possible among the best places.
int nextCut(const QImage &picture, int begin, int most, Qt::Orientation along)
{
    const bool isRow = along == Qt::Horizontal;
    const int side = isRow ? picture.height() : picture.width();
    if (begin + most >= side)
        return side;
    const int room = static_cast<int>(most * s_cutRoom);
    const int first = begin + most - room;
    const QRect part =
        isRow ? QRect(0, first, picture.width(), room) : QRect(first, 0, room, picture.height());
    const QImage grey = picture.copy(part).convertToFormat(QImage::Format_Grayscale8);
    if (grey.isNull())
        return begin + most;
    int best = room - 1;
    qint64 least = inkAt(grey, best, along);
    for (int i = room - 2; i >= 0; --i) {
        if (const qint64 ink = inkAt(grey, i, along); ink < least) {
            least = ink;
            best = i;
        }
    }
    return first + best + 1;
}

// The parts that are read one by one, from top to bottom and from left to right.
QList<QRect> partsOf(const QImage &picture)
{
    QList<QRect> result;
    for (int top = 0; top < picture.height();) {
        const int bottom = nextCut(picture, top, s_mostAtOnce.height(), Qt::Horizontal);
        for (int left = 0; left < picture.width();) {
            const int right = nextCut(picture, left, s_mostAtOnce.width(), Qt::Vertical);
            result.append(QRect(left, top, right - left, bottom - top));
            left = right;
        }
        top = bottom;
    }
    return result;
}

// Enlarged, dark on white, with a margin.
QImage prepared(const QImage &part)
{
    const QImage grey = onWhite(part);
    const QSize size(std::max(1, qRound(part.width() * s_enlarged)),
                     std::max(1, qRound(part.height() * s_enlarged)));
    const QImage large = grey.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_Grayscale8);
    QImage result(size + QSize(2 * s_margin, 2 * s_margin), QImage::Format_Grayscale8);
    if (large.isNull() || result.isNull())
        return {};
    result.fill(Qt::white);
    for (int y = 0; y < size.height(); ++y) {
        std::copy_n(large.constScanLine(y), size.width(), result.scanLine(y + s_margin) + s_margin);
    }
    return result;
}

// A box of the picture that was prepared from a part.
QRect inPicture(const QRect &box, const QRect &part)
{
    const auto down = [](int pixels) {
        return static_cast<int>(std::floor((pixels - s_margin) / s_enlarged));
    };
    const auto up = [](int pixels) {
        return static_cast<int>(std::ceil((pixels - s_margin) / s_enlarged));
    };
    const QPoint corner(down(box.x()), down(box.y()));
    const QPoint end(up(box.x() + box.width()), up(box.y() + box.height()));
    return QRect(corner, QSize(end.x() - corner.x(), end.y() - corner.y()))
               .translated(part.topLeft()) &
           part;
}

// One use of the library.
class Reading
{
public:
    Reading(const Tesseract &library, const TextReader::GoesOn &goesOn, int limit)
        : m_library(library), m_goesOn(goesOn), m_deadline(limit),
          m_handle(library.create(), library.destroy)
    {
    }

    // The data that is installed.
    QStringList languages()
    {
        // Where the data lies is known once some has been looked for, whether it was there or not.
        m_library.init(m_handle.get(), nullptr, "eng");
        QStringList result;
        const std::unique_ptr<char *, void (*)(char **)> names(m_library.languages(m_handle.get()),
                                                               m_library.deleteTexts);
        for (char **name = names.get(); name && *name; ++name)
            result.append(QString::fromUtf8(*name));
        return result;
    }

    bool begin(const QStringList &codes)
    {
        if (m_library.init(m_handle.get(), nullptr, codes.join(u'+').toUtf8().constData()) != 0)
            return false;
        // It writes to standard error what nobody asked for.
        m_library.setVariable(m_handle.get(), "debug_file", "/dev/null");
        return true;
    }

    // Part `part` of `parts`; false if it was given up.
    bool read(const QImage &picture, const QRect &place, std::pair<int, int> partOfAll,
              QList<ReadLine> &lines)
    {
        m_part = partOfAll;
        if (!goesOn(0))
            return false;
        const QImage image = prepared(picture.copy(place));
        if (image.isNull())
            throw std::bad_alloc();
        Found found;
        if (!readAsItIs(image, found))
            return false;
        if (found.letters >= s_leastToDoubt && found.confidence() < s_leastUpright &&
            !readUpsideDown(image, found))
            return false;
        for (ReadLine &line : found.lines) {
            for (ReadWord &word : line.words)
                word.box = inPicture(withWholeLetters(word.box, image), place);
        }
        lines += found.lines;
        return true;
    }

    bool isLate() const { return m_deadline.hasExpired(); }

private:
    static constexpr int s_resolution = 300;  // dots per inch that enlarged letters look like

    // What was read, with boxes in what was read from.
    struct Found {
        QList<ReadLine> lines{};
        qsizetype letters = 0;
        qreal trust = 0;  ///< the sum of all letters' confidence, up to 100 each

        qreal confidence() const { return letters > 0 ? trust / static_cast<qreal>(letters) : 0; }
    };

    bool goesOn(int permille)
    {
        // What is read a second time has been counted.
        m_told = std::max(m_told, (m_part.first * 1000 + permille) / m_part.second);
        return !m_deadline.hasExpired() && m_goesOn(m_told);
    }

    bool readAsItIs(const QImage &image, Found &found)
    {
        m_library.setMode(m_handle.get(), s_automatic);
        m_library.setImage(m_handle.get(), image.constBits(), image.width(), image.height(), 1,
                           static_cast<int>(image.bytesPerLine()));
        m_library.setResolution(m_handle.get(), s_resolution);
        if (!recognize(found))
            return false;
        // A word or two alone make no block.
        if (found.lines.isEmpty()) {
            m_library.setMode(m_handle.get(), s_sparse);
            if (!recognize(found))
                return false;
        }
        joinTornWords(found.lines);
        return true;
    }

    // The library turns what stands on its side by a quarter, always the same way, but nothing
    // upside down. Keeps what makes more sense; what was found stays where there is no time left.
    bool readUpsideDown(const QImage &image, Found &found)
    {
        Found turned;
        if (!readAsItIs(image.mirrored(true, true), turned))
            return isLate();
        if (turned.confidence() <= found.confidence())
            return true;
        const QPoint end = image.rect().bottomRight();
        for (ReadLine &line : turned.lines) {
            for (ReadWord &word : line.words)
                word.box = QRect(end - word.box.bottomRight(), word.box.size());
        }
        found = std::move(turned);
        return true;
    }

    bool recognize(Found &found)
    {
        const std::unique_ptr<void, void (*)(void *)> monitor(m_library.createMonitor(),
                                                              m_library.deleteMonitor);
        struct Watch {
            Reading &reading;
            void *monitor;
            bool isGivenUp = false;
        } watch{*this, monitor.get()};
        m_library.setCancelThis(monitor.get(), &watch);
        m_library.setCancel(monitor.get(), [](void *self, int /*words*/) {
            auto &own = *static_cast<Watch *>(self);
            const int percent = own.reading.m_library.progress(own.monitor);
            own.isGivenUp = own.isGivenUp || !own.reading.goesOn(std::clamp(percent, 0, 100) * 10);
            return own.isGivenUp;
        });
        const bool isRead = m_library.recognize(m_handle.get(), monitor.get()) == 0;
        if (watch.isGivenUp || !goesOn(1000))
            return false;
        if (isRead)
            collect(found);
        return true;
    }

    QString textOf(const void *results, int level) const
    {
        const std::unique_ptr<char, void (*)(const char *)> text(m_library.textOf(results, level),
                                                                 m_library.deleteText);
        return QString::fromUtf8(text.get()).trimmed();
    }

    // In the enlarged picture.
    QRect boxOf(const void *results) const
    {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
        if (!m_library.box(m_library.pageOf(results), s_byWord, &left, &top, &right, &bottom))
            return {};
        return QRect(QPoint(left, top), QSize(right - left, bottom - top));
    }

    void collect(Found &found) const
    {
        const std::unique_ptr<void, void (*)(void *)> results(m_library.results(m_handle.get()),
                                                              m_library.deleteResults);
        if (!results)
            return;
        bool beginsBlock = true;
        bool isTrusted = false;
        do {
            const void *page = m_library.pageOf(results.get());
            beginsBlock = beginsBlock || m_library.begins(page, s_byBlock);
            if (m_library.begins(page, s_byLine)) {
                const QString text = joined(textOf(results.get(), s_byLine));
                isTrusted = !text.isEmpty() &&
                            (text.size() > s_fewLetters ||
                             m_library.confidence(results.get(), s_byLine) >= s_leastConfidence);
                if (isTrusted) {
                    found.lines.append({.text = text, .beginsBlock = beginsBlock});
                    beginsBlock = false;
                }
            }
            if (!isTrusted)
                continue;
            ReadWord word{textOf(results.get(), s_byWord), boxOf(results.get())};
            if (word.text.isEmpty() || word.box.isEmpty())
                continue;
            found.letters += word.text.size();
            found.trust += qreal(m_library.confidence(results.get(), s_byWord)) *
                           static_cast<qreal>(word.text.size());
            found.lines.last().words.append(std::move(word));
        } while (m_library.next(results.get(), s_byWord));
    }

    const Tesseract &m_library;
    const TextReader::GoesOn &m_goesOn;
    QDeadlineTimer m_deadline;
    std::unique_ptr<void, void (*)(void *)> m_handle;
    std::pair<int, int> m_part{0, 1};  ///< which of how many is being read
    int m_told = 0;                    ///< permille
};

}  // namespace

QString ReadText::text() const
{
    QString result;
    for (const ReadLine &line : lines) {
        if (!result.isEmpty())
            result += line.beginsBlock ? u"\n\n"_s : u"\n"_s;
        result += line.text;
    }
    return result;
}

QList<ReadWord> ReadText::words() const
{
    return std::accumulate(lines.begin(), lines.end(), QList<ReadWord>(),
                           [](QList<ReadWord> all, const ReadLine &line) {
                               all += line.words;
                               return all;
                           });
}

TextReader::TextReader(QStringList libraries) : m_libraries(std::move(libraries)) {}

QStringList TextReader::usualLibraries()
{
    return {u"libtesseract.so.5"_s, u"libtesseract.so.4"_s};
}

QString TextReader::lack() const
{
    return RuntimeLibrary::isInstalled(m_libraries)
               ? QString()
               : tr("Reading text needs the package %1.").arg(u"tesseract-ocr"_s);
}

// Most codes are the languages' own of three letters.
QStringList TextReader::codesOf(const QStringList &languages)
{
    QStringList result;
    for (const QString &name : languages) {
        const QLocale locale(name);
        QString code = QLocale::languageToCode(locale.language(), QLocale::ISO639Part2T);
        if (locale.language() == QLocale::Chinese) {
            code = locale.script() == QLocale::TraditionalHanScript ? u"chi_tra"_s : u"chi_sim"_s;
        } else if (locale.language() == QLocale::NorwegianBokmal ||
                   locale.language() == QLocale::NorwegianNynorsk) {
            code = u"nor"_s;
        } else if (locale.language() == QLocale::Serbian &&
                   locale.script() == QLocale::LatinScript) {
            code = u"srp_latn"_s;
        }
        if (locale.language() != QLocale::C && !code.isEmpty() && !result.contains(code) &&
            result.size() < s_mostLanguages)
            result.append(code);
    }
    if (!result.contains(u"eng"_s))
        result.append(u"eng"_s);
    return result;
}

ReadText TextReader::read(const QImage &picture, const GoesOn &goesOn, int limit) const
{
    const std::optional<Tesseract> library = openedLibrary(m_libraries);
    if (!library) {
        qCInfo(logStore) << "no library that reads text is complete:" << m_libraries;
        return {.failure = tr("Reading text needs the package %1.").arg(u"tesseract-ocr"_s)};
    }
    workAlone();
    ReadText result;
    try {
        Reading reading(*library, goesOn, limit);
        QStringList codes = codesOf(QLocale::system().uiLanguages());
        const QStringList there = reading.languages();
        for (const QString &code : std::as_const(codes)) {
            if (!there.contains(code))
                result.missing.append(packageOf(code));
        }
        codes.removeIf([&](const QString &code) { return !there.contains(code); });
        if (codes.isEmpty() || !reading.begin(codes)) {
            result.failure = tr("Reading text needs the package %1.")
                                 .arg(result.missing.value(0, u"tesseract-ocr"_s));
            return result;
        }
        const QList<QRect> parts = partsOf(picture);
        for (int i = 0; i < parts.size(); ++i) {
            if (reading.read(picture, parts[i], {i, static_cast<int>(parts.size())}, result.lines))
                continue;
            result.lines.clear();
            if (reading.isLate()) {
                result.failure =
                    tr("Reading took longer than %1 seconds and was given up. A part of the "
                       "picture takes less.")
                        .arg(limit / 1000);
            }
            return result;
        }
    } catch (const std::exception &error) {
        qCInfo(logStore) << "reading text failed:" << error.what();
        return {.failure = tr("There is not enough memory to read the picture.")};
    }
    return result;
}
