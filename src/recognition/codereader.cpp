#include "recognition/codereader.h"

#include "base/log.h"
#include "recognition/runtimelibrary.h"

#include <QPainter>

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

ReadCode codeOf(const Zbar &library, const void *symbol)
{
    QRect box;
    for (unsigned i = 0; i < library.corners(symbol); ++i)
        box |= QRect(library.x(symbol, i), library.y(symbol, i), 1, 1);
    return {QString::fromUtf8(library.nameOf(library.type(symbol))),
            QString::fromUtf8(library.data(symbol), library.length(symbol)), box};
}

QList<ReadCode> codesIn(const Zbar &library, const QByteArray &grey, QSize size)
{
    QList<ReadCode> result;
    const std::unique_ptr<void, void (*)(void *)> scanner(library.createScanner(),
                                                          library.destroyScanner);
    const std::unique_ptr<void, void (*)(void *)> image(library.createImage(),
                                                        library.destroyImage);
    library.configure(scanner.get(), s_everyType, s_enabled, 1);
    library.setFormat(image.get(), s_grey);
    library.setSize(image.get(), size.width(), size.height());
    library.setData(image.get(), grey.constData(), grey.size(), nullptr);
    library.scan(scanner.get(), image.get());
    for (const void *symbol = library.first(image.get()); symbol; symbol = library.next(symbol)) {
        const ReadCode code = codeOf(library, symbol);
        const bool isKnown = std::any_of(result.begin(), result.end(), [&](const ReadCode &other) {
            return other.type == code.type && other.text == code.text;
        });
        const bool isTrusted =
            library.type(symbol) == s_qrCode || library.quality(symbol) >= s_leastRows;
        if (!isKnown && isTrusted && !code.text.isEmpty())
            result.append(code);
    }
    std::stable_sort(result.begin(), result.end(), [](const ReadCode &a, const ReadCode &b) {
        return a.box.top() < b.box.top();
    });
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
