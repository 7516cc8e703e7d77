// What is kept of pins: nothing that is damaged hides the others, and zooming keeps the pixel
// below the pointer.

#include "rows.h"
#include "scratch.h"
#include "shell/pinfolder.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class TestPinFolder : public QObject
{
    Q_OBJECT

private slots:
    void folder()
    {
        const Scratch scratch;
        const QString path = scratch.path(u"a/pins"_s);
        const PinFolder folder(path);
        QCOMPARE(folder.write({}), QString());
        QVERIFY(!QDir(path).exists());
        QList<PinnedPicture> pins;
        for (const QString &id : {u"one"_s, u"two"_s, u"three"_s}) {
            QImage picture(7, 5, QImage::Format_ARGB32);
            picture.fill(QColor(10, 20, static_cast<int>(pins.size()), 128));
            pins.append({.id = id,
                         .picture = picture,
                         .name = id.toUpper(),
                         .place = {-30, 40},
                         .zoom = 2.5,
                         .opacity = 0.4});
        }
        QCOMPARE(folder.write(pins), QString());
        QCOMPARE(QFile::permissions(path + u"/one.png"_s) & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
        const auto find = [&folder](const QString &id) {
            for (const PinnedPicture &pin : folder.read()) {
                if (pin.id == id)
                    return pin;
            }
            return PinnedPicture();
        };
        QCOMPARE(find(u"two"_s).picture.convertToFormat(QImage::Format_ARGB32), pins[1].picture);
        QCOMPARE(find(u"two"_s).name, u"TWO"_s);
        QCOMPARE(find(u"two"_s).place, QPoint(-30, 40));
        QCOMPARE(find(u"two"_s).zoom, 2.5);
        QCOMPARE(find(u"two"_s).opacity, 0.4);

        // Cut short, and made up by somebody.
        QVERIFY(QFile(path + u"/one.png"_s).resize(40));
        scratch.put(u"a/pins/pins.json"_s,
                    R"([3, {"id": "two", "x": 1e99, "y": "far", "zoom": -1, "opacity": 7}])");
        QCOMPARE(folder.read().size(), 2);
        QCOMPARE(find(u"two"_s).zoom, PinnedPicture::s_leastZoom);
        QCOMPARE(find(u"two"_s).opacity, 1.0);
        QCOMPARE(find(u"three"_s).zoom, 1.0);
        scratch.put(u"a/pins/pins.json"_s, "{");
        QCOMPARE(folder.read().size(), 2);

        // What is pinned no more is on the disk no more.
        QCOMPARE(folder.write(pins.mid(2)), QString());
        QCOMPARE(QDir(path).entryList(QDir::Files), (QStringList{u"pins.json"_s, u"three.png"_s}));
        scratch.put(u"file"_s, {});
        QVERIFY(!PinFolder(scratch.path(u"file"_s)).write(pins).isEmpty());
    }

    void zoom()
    {
        PinnedPicture pin{.picture = QImage(400, 100, QImage::Format_RGB32), .place = {100, 50}};
        const QSize desktop(1000, 1000);
        pin.zoomAt(2, {200, 100});
        QCOMPARE(pin.place, QPoint(0, 0));
        QCOMPARE(pin.shownSize(), QSize(800, 200));
        // As far as it fits; one that is larger already only shrinks.
        QCOMPARE(pin.steppedZoom(9, desktop), 2.5);
        pin.zoom = 4;
        QCOMPARE(pin.steppedZoom(1, desktop), 4.0);
        QVERIFY(pin.steppedZoom(-1, desktop) < 4);
        // There and back again is where it was.
        pin.zoom = 1;
        for (const int step : {-1, -1, -1, -1, -1, 1, 1, 1, 1, 1})
            pin.zoom = pin.steppedZoom(step, desktop);
        QCOMPARE(pin.zoom, 1.0);
        QCOMPARE(pin.steppedZoom(-99, desktop), PinnedPicture::s_leastZoom);
        QCOMPARE(pin.steppedOpacity(-99), PinnedPicture::s_leastOpacity);
        pin.opacity = 0.9;
        QCOMPARE(pin.steppedOpacity(1), 1.0);
    }
};

QTEST_MAIN(TestPinFolder)
#include "test_pinfolder.moc"
