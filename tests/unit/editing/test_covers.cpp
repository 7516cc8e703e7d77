#include "editing/covering.h"
#include "editing/pictureeditor.h"
#include "editing/picturefile.h"
#include "editing/rendering.h"
#include "rows.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <numeric>
#include <type_traits>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_trials = 200;
constexpr int s_mostRight = s_trials / 5;

OperationPtr covering(stateEnum kind, const QRect &area)
{
    Drag drag;
    drag.box = area;
    return adding({*shapeFrom(kind, drag), {.type = kind, .color = QColor(0, 0, 0, 100)}});
}

struct Digit {
    QImage picture{};
    EditEntry cover{};
};

// In the middle of its area, which is covered.
Digit digit(int which, int size, stateEnum kind)
{
    QImage picture(size, size * 3 / 2, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(size);
    QPainter painter(&picture);
    painter.setFont(font);
    painter.drawText(picture.rect(), Qt::AlignCenter, QString::number(which));
    painter.end();
    return {picture, *shapeOf(*withColors(covering(kind, picture.rect()), {}, picture, 0))};
}

QImage covered(const Digit &digit, int seed)
{
    EditEntry cover = digit.cover;
    std::visit(
        [seed]<typename Shape>(Shape &shape) {
            if constexpr (std::is_base_of_v<CoverBlocks, Shape>)
                shape.seed = seed;
        },
        cover.geometry);
    return replayed(digit.picture, {adding(cover)}, Qt::transparent);
}

// What somebody compares who wants to know what was there: all pixels in their places, only how
// many there are of each colour, or the places after a lucky guess of the seed.
enum class Look { Places, Counts, Guess };

std::vector<int> seenOf(const QImage &picture, Look look)
{
    std::vector<int> result;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            result.push_back(qGray(picture.pixel(x, y)));
    }
    if (look == Look::Counts)
        std::sort(result.begin(), result.end());
    return result;
}

double distance(const std::vector<int> &one, const std::vector<int> &other)
{
    return std::transform_reduce(one.begin(), one.end(), other.begin(), 0., std::plus(),
                                 [](int a, int b) { return double(a - b) * (a - b); });
}

// In how many trials the digit is the one of ten that looks most like it.
int rightGuesses(stateEnum kind, int size, Look look, QRandomGenerator &random)
{
    std::vector<Digit> digits;
    digits.reserve(10);
    for (int which = 0; which < 10; ++which)
        digits.push_back(digit(which, size, kind));
    int right = 0;
    for (int trial = 0; trial < s_trials; ++trial) {
        int seed = random.bounded(CoverBlocks::s_highestSeed);
        const auto next = [&] {
            return look == Look::Guess ? seed : random.bounded(CoverBlocks::s_highestSeed);
        };
        const int which = random.bounded(10);
        const auto seen = seenOf(covered(digits[which], seed), look);
        std::vector<std::pair<double, double>> distances;
        distances.reserve(digits.size());
        // Of those that look the same any may be taken.
        for (const Digit &other : digits)
            distances.emplace_back(distance(seen, seenOf(covered(other, next()), look)),
                                   random.generateDouble());
        right += std::min_element(distances.begin(), distances.end()) - distances.begin() == which;
    }
    return right;
}

}  // namespace

/// Nobody gets back what lies below a cover.
class TestCovers : public QObject
{
    Q_OBJECT

private slots:
    void digitsStayHidden()
    {
        QRandomGenerator random(19);
        for (const stateEnum kind : {stateBlur, statePixelate}) {
            for (const int size : {8, 12, 24, 48, 96}) {
                for (const Look look : {Look::Places, Look::Counts, Look::Guess}) {
                    const int right = rightGuesses(kind, size, look, random);
                    QVERIFY2(right <= s_mostRight,
                             qPrintable(u"%1, %2 pixels, look %3: %4 of %5"_s
                                            .arg(QLatin1StringView(toolOf(kind).id))
                                            .arg(size)
                                            .arg(int(look))
                                            .arg(right)
                                            .arg(s_trials)));
                }
            }
        }
    }

    // Two pictures that differ only below a cover give the same file, also if the picture was
    // changed after it was covered: resized, its pixels are mixed with those beside them.
    void filesAreTheSame()
    {
        QTemporaryDir folder;
        QImage one(200, 160, QImage::Format_RGB32);
        QRandomGenerator random(7);
        random.fillRange(reinterpret_cast<quint32 *>(one.bits()), one.sizeInBytes() / 4);
        QImage other = one;
        const QRect area(41, 33, 70, 52);
        for (int y = area.top(); y <= area.bottom(); ++y)
            random.fillRange(reinterpret_cast<quint32 *>(other.scanLine(y)) + area.left(),
                             area.width());
        const auto check = [&](const QByteArray &row, const QList<OperationPtr> &changes) {
            QList<QByteArray> files;
            EditHistory history{covering(stateSolid, area)};
            for (const OperationPtr &change : changes)
                history.prepend(change);
            for (const QImage &picture : {one, other}) {
                const QString path = folder.filePath(u"file.png"_s);
                PictureProgress progress;
                QVERIFY2(writePicture(changed(picture, sceneOf({}, picture.size())), history, path,
                                      {}, -1, progress)
                             .isWritten,
                         row);
                QFile file(path);
                QVERIFY(file.open(QIODevice::ReadOnly));
                files.append(file.readAll());
            }
            QVERIFY2(files.first() == files.last(), row);
        };
        check("as it was", {});
        check("turned and cropped",
              {operation(TurnPicture{1}), operation(CropPicture{QRect(20, 10, 90, 120)})});
        for (const QSize size :
             {QSize(67, 53), QSize(199, 159), QSize(201, 163), QSize(613, 411), QSize(400, 40)})
            check("resized to " + QByteArray::number(size.width()),
                  {operation(ResizePicture{size})});
        check("resized twice", {operation(ResizePicture{{90, 110}}), operation(MirrorPicture{}),
                                operation(ResizePicture{{410, 300}})});
    }

    // Nor does anything of it shine through where the picture lies on itself, blurred.
    void groundsAreTheSame()
    {
        QImage one(120, 90, QImage::Format_RGB32);
        one.fill(Qt::white);
        QImage other = one;
        const QRect area(30, 20, 60, 50);
        QPainter(&other).fillRect(area, Qt::red);
        const OperationPtr cover = covering(stateSolid, area);
        const auto seen = [&](const QImage &picture, bool isCoveredFirst, int radius) {
            QWidget widget;
            TPictureEditor editor(&widget, nullptr);
            editor.setPixmap(QPixmap::fromImage(picture));
            const Backdrop backdrop{.ground = Backdrop::Ground::Blurred, .radius = radius};
            if (isCoveredFirst)
                editor.record(cover);
            editor.putOn(backdrop);
            if (!isCoveredFirst) {
                editor.record(operation(TurnPicture{2}));
                const QRect now = PictureMap::turning(2, editor.pictureSize())(
                    area.translated(backdrop.placeOf(one.size()).topLeft()));
                editor.record(covering(stateSolid, now));
            }
            return editor.sendPixmap(Qt::transparent).toImage();
        };
        for (const bool isCoveredFirst : {true, false})
            QCOMPARE(seen(one, isCoveredFirst, 0), seen(other, isCoveredFirst, 0));
        QVERIFY(seen(one, true, 0) != seen(one, true, 30));
    }

    // A cover keeps its pixels as long as it stays where it is, and takes new colours elsewhere.
    void colorsFollow()
    {
        QImage picture(100, 100, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QPainter(&picture).fillRect(50, 0, 50, 100, Qt::blue);
        const OperationPtr first =
            withColors(covering(statePixelate, {0, 0, 40, 40}), {}, picture, 5);
        const EntryPtr cover = shapeOf(*first);
        const auto colors = [](const EntryPtr &shape) {
            return std::get<PixelateShape>(shape->geometry).colors;
        };
        QCOMPARE(colors(cover), QList<QRgb>({0xffff0000, 0xffff0000}));
        EditEntry next = *cover;
        next.style.width = 3;
        const auto replaced = [&] {
            return shapeOf(
                *withColors(operation(ReplaceShape{std::make_shared<const EditEntry>(next)}),
                            {cover}, picture, 9));
        };
        QCOMPARE(replaced()->geometry, cover->geometry);
        next = mapped(next, PictureMap::moving({20, 0}));
        QCOMPARE(colors(replaced()), QList<QRgb>({0xffff0000, 0xffff0000, 0xff0000ff}));
        QCOMPARE(std::get<PixelateShape>(replaced()->geometry).seed,
                 std::get<PixelateShape>(cover->geometry).seed);
    }
};

QTEST_MAIN(TestCovers)
#include "test_covers.moc"
