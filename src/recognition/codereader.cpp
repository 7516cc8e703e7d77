#include "recognition/codereader.h"

#include "base/log.h"
#include "recognition/runtimelibrary.h"

#include <QPainter>
#include <QStringDecoder>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned long s_grey = 0x30303859;  // "Y800", one byte a pixel
constexpr int s_qrCode = 64;
constexpr int s_everyType = 0;
constexpr int s_enabled = 0;
constexpr int s_asBytes = 4;
// Lines of text may look like a bar code, but hardly in two rows of pixels.
constexpr int s_leastRows = 2;

// The library's functions, as it declares them.
struct Zbar {
    void *(*createScanner)() = nullptr;
    void (*destroyScanner)(void *) = nullptr;
    int (*configure)(void *, int, int, int) = nullptr;
    int (*scan)(void *, void *) = nullptr;
    void *(*createImage)() = nullptr;
    void (*destroyImage)(void *) = nullptr;
    void (*setFormat)(void *, unsigned long) = nullptr;
    void (*setSize)(void *, unsigned, unsigned) = nullptr;
    void (*setData)(void *, const void *, unsigned long, void (*)(void *)) = nullptr;
    const void *(*first)(const void *) = nullptr;
    const void *(*next)(const void *) = nullptr;
    int (*type)(const void *) = nullptr;
    const char *(*nameOf)(int) = nullptr;
    const char *(*data)(const void *) = nullptr;
    unsigned (*length)(const void *) = nullptr;
    int (*quality)(const void *) = nullptr;
    unsigned (*corners)(const void *) = nullptr;
    int (*x)(const void *, unsigned) = nullptr;
    int (*y)(const void *, unsigned) = nullptr;
};

std::optional<Zbar> openedLibrary(const QStringList &names)
{
    RuntimeLibrary library(names);
    Zbar result;
    library.resolve(result.createScanner, "zbar_image_scanner_create");
    library.resolve(result.destroyScanner, "zbar_image_scanner_destroy");
    library.resolve(result.configure, "zbar_image_scanner_set_config");
    library.resolve(result.scan, "zbar_scan_image");
    library.resolve(result.createImage, "zbar_image_create");
    library.resolve(result.destroyImage, "zbar_image_destroy");
    library.resolve(result.setFormat, "zbar_image_set_format");
    library.resolve(result.setSize, "zbar_image_set_size");
    library.resolve(result.setData, "zbar_image_set_data");
    library.resolve(result.first, "zbar_image_first_symbol");
    library.resolve(result.next, "zbar_symbol_next");
    library.resolve(result.type, "zbar_symbol_get_type");
    library.resolve(result.nameOf, "zbar_get_symbol_name");
    library.resolve(result.data, "zbar_symbol_get_data");
    library.resolve(result.length, "zbar_symbol_get_data_length");
    library.resolve(result.quality, "zbar_symbol_get_quality");
    library.resolve(result.corners, "zbar_symbol_get_loc_size");
    library.resolve(result.x, "zbar_symbol_get_loc_x");
    library.resolve(result.y, "zbar_symbol_get_loc_y");
    return library.isComplete() ? std::optional(result) : std::nullopt;
}

// Grey, with transparent pixels as white, and with no gap between the rows, which the library does
// not know of.
QByteArray greyBytes(const QImage &picture)
{
    QImage opaque(picture.size(), QImage::Format_RGB32);
    if (opaque.isNull())
        return {};
    opaque.fill(Qt::white);
    QPainter(&opaque).drawImage(0, 0, picture);
    const QImage grey = opaque.convertToFormat(QImage::Format_Grayscale8);
    QByteArray result;
    result.reserve(static_cast<qsizetype>(grey.width()) * grey.height());
    for (int y = 0; y < grey.height(); ++y)
        result.append(reinterpret_cast<const char *>(grey.constScanLine(y)), grey.width());
    return result;
}

struct Symbol {
    int type = 0;
    int quality = 0;
    QRect box{};
    QByteArray bytes{};
};

// What the library finds. Of a QR code it guesses what its bytes mean, unless it hands them over
// as they are.
QList<Symbol> symbolsIn(const Zbar &library, const QByteArray &grey, QSize size, bool asBytes)
{
    QList<Symbol> result;
    const std::unique_ptr<void, void (*)(void *)> scanner(library.createScanner(),
                                                          library.destroyScanner);
    const std::unique_ptr<void, void (*)(void *)> image(library.createImage(),
                                                        library.destroyImage);
    library.configure(scanner.get(), s_everyType, s_enabled, 1);
    if (asBytes && library.configure(scanner.get(), s_qrCode, s_asBytes, 1) != 0)
        return result;
    library.setFormat(image.get(), s_grey);
    library.setSize(image.get(), size.width(), size.height());
    library.setData(image.get(), grey.constData(), grey.size(), nullptr);
    library.scan(scanner.get(), image.get());
    for (const void *symbol = library.first(image.get()); symbol; symbol = library.next(symbol)) {
        Symbol found{.type = library.type(symbol), .quality = library.quality(symbol)};
        for (unsigned i = 0; i < library.corners(symbol); ++i)
            found.box |= QRect(library.x(symbol, i), library.y(symbol, i), 1, 1);
        found.bytes = QByteArray(library.data(symbol), library.length(symbol));
        result.append(found);
    }
    return result;
}

bool isAscii(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte >= 0; });
}

// Most programs that make codes write UTF-8, which the library may take for something else.
QString textOf(const Symbol &symbol, const QList<Symbol> &asBytes)
{
    for (const Symbol &other : asBytes) {
        QStringDecoder decoder(QStringDecoder::Utf8);
        QString text = decoder(other.bytes);
        if (other.type == symbol.type && other.box == symbol.box && !decoder.hasError())
            return text;
    }
    return QString::fromUtf8(symbol.bytes);
}

// As they are read: row by row, each from the left.
void sortByPlace(QList<ReadCode> &codes)
{
    const auto isHigher = [](const ReadCode &a, const ReadCode &b) {
        return a.box.top() < b.box.top();
    };
    const auto isFarther = [](const ReadCode &a, const ReadCode &b) {
        return a.box.left() < b.box.left();
    };
    std::stable_sort(codes.begin(), codes.end(), isHigher);
    for (auto row = codes.begin(); row != codes.end();) {
        const int middle = row->box.center().y();
        const auto next = std::find_if(
            row, codes.end(), [middle](const ReadCode &code) { return code.box.top() > middle; });
        std::stable_sort(row, next, isFarther);
        row = next;
    }
}

QList<ReadCode> codesIn(const Zbar &library, const QByteArray &grey, QSize size)
{
    QList<ReadCode> result;
    const QList<Symbol> symbols = symbolsIn(library, grey, size, false);
    const bool isPlain = std::all_of(symbols.begin(), symbols.end(), [](const Symbol &symbol) {
        return symbol.type != s_qrCode || isAscii(symbol.bytes);
    });
    const QList<Symbol> asBytes = isPlain ? QList<Symbol>() : symbolsIn(library, grey, size, true);
    for (const Symbol &symbol : symbols) {
        const ReadCode code{QString::fromUtf8(library.nameOf(symbol.type)), textOf(symbol, asBytes),
                            symbol.box};
        const bool isKnown = std::any_of(result.begin(), result.end(), [&](const ReadCode &other) {
            return other.type == code.type && other.text == code.text;
        });
        const bool isTrusted = symbol.type == s_qrCode || symbol.quality >= s_leastRows;
        if (!isKnown && isTrusted && !code.text.isEmpty())
            result.append(code);
    }
    sortByPlace(result);
    return result;
}

}  // namespace

CodeReader::CodeReader(QStringList libraries) : m_libraries(std::move(libraries)) {}

QStringList CodeReader::usualLibraries() { return {u"libzbar.so.0"_s}; }

QString CodeReader::lack() const
{
    return RuntimeLibrary::isInstalled(m_libraries)
               ? QString()
               : tr("Reading codes needs the package %1.").arg(u"libzbar0"_s);
}

CodeReader::Result CodeReader::read(const QImage &picture) const
{
    const std::optional<Zbar> library = openedLibrary(m_libraries);
    if (!library) {
        qCInfo(logStore) << "no library that reads codes is complete:" << m_libraries;
        return {.failure = tr("Reading codes needs the package %1.").arg(u"libzbar0"_s)};
    }
    QByteArray grey = greyBytes(picture);
    if (grey.isEmpty())
        return {};
    Result result{.codes = codesIn(*library, grey, picture.size())};
    if (result.codes.isEmpty()) {
        // Light on dark.
        std::transform(grey.begin(), grey.end(), grey.begin(),
                       [](char value) { return static_cast<char>(~value); });
        result.codes = codesIn(*library, grey, picture.size());
    }
    return result;
}
