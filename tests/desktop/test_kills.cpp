// The program is killed at random moments of its work, and nothing that is older than a second is
// lost.

#include "snapworkbench.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>
#include <QUrl>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QRgb s_black = qRgb(0, 0, 0);

constexpr int s_promise = 1000;  // ms
constexpr int s_longest = 900;   // ms between what is under way and the kill
constexpr int s_start = 200;     // ms; about as long as a start takes to read its files

enum Work { Grab, Draw, Type, Open, Save, Quit, WorkCount };

// What lies on the disk of unsaved pictures.
struct Kept {
    int pictures = 0;
    int shapes = 0;
    int texts = 0;
    QStringList names{};
};

bool isRed(QRgb pixel) { return qRed(pixel) > 150 && qGreen(pixel) < 100; }

}  // namespace

class TestKills : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    void killedAtAnyMoment()
    {
        const bool isLong = qEnvironmentVariableIsSet("SNAP_LONG");
        const int rounds = isLong ? 500 : 20;
        const uint seed = isLong ? QRandomGenerator::global()->generate() : 12;
        QRandomGenerator random(seed);
        QVERIFY(begin({.settings = {{u"RunMinimized"_s, u"1"_s},
                                    {u"AutoShow"_s, u"1"_s},
                                    {u"LineWidth"_s, u"3"_s}}}));
        QImage black(1400, 900, QImage::Format_RGB32);
        black.fill(Qt::black);
        QVERIFY(black.save(m_desktop->home() + u"/other.png"_s));
        QVERIFY(grab() && findPicture(s_black));
        QVERIFY(waitFor([&] { return kept().pictures == 1; }));

        for (int round = 0; round < rounds; ++round) {
            const auto work = static_cast<Work>(random.bounded(WorkCount));
            const QByteArray trace = "seed " + QByteArray::number(seed) + ", round " +
                                     QByteArray::number(round) + ", work " +
                                     QByteArray::number(work);
            const Kept before = kept();
            const QString path = m_desktop->home() + u'/' + QString::number(round) + u".png"_s;
            if (work == Save) {
                // With a spot of its own: the picture shown before is black as well.
                const QPoint own(20 + round, 10);
                QImage picture = black;
                QPainter(&picture).fillRect(QRect(own - QPoint(2, 2), QSize(5, 5)), Qt::blue);
                QVERIFY(picture.save(path));
                open(path);
                QVERIFY2(isTitled(QFileInfo(path).fileName()), trace.constData());
                QVERIFY2(
                    waitFor([&] { return m_desktop->pixel(m_origin + own) == qRgb(0, 0, 255); }),
                    trace.constData());
            }
            QVERIFY2(markUp(round), trace.constData());
            QTest::qWait(s_promise);
            start(work, round);
            kill(random.bounded(s_longest));

            const Kept after = kept();
            bool isKept = after.pictures >= qMax(before.pictures, 1) &&
                          after.shapes > before.shapes && after.texts >= before.texts;
            if (work == Save && !after.names.contains(path)) {
                const QPoint corner = place(round) - m_origin;
                isKept = isRed(QImage(path).pixel(corner + QPoint(0, 3))) &&
                         after.pictures == before.pictures && after.shapes == before.shapes;
            }
            QVERIFY2(isKept, trace.constData());
            // A start that is killed loses nothing either.
            QVERIFY(m_program->start());
            kill(random.bounded(s_start));
            QVERIFY2(isBack(), trace.constData());
        }
    }

private:
    void kill(int moment)
    {
        QTest::qWait(moment);
        m_program->process()->kill();
        QVERIFY(m_program->process()->waitForFinished());
    }
    // Also a program that starts minimised comes to the front with what came back.
    bool isBack()
    {
        return m_program->start() && waitFor([&] {
                   const TestDesktop::Window window = m_program->mainWindow();
                   m_window = window.area;
                   return window.viewable && window.title == m_desktop->activeTitle() &&
                          window.title.endsWith(u" * - Snap Workbench"_s) && isBlack();
               });
    }
    /// Whether the window shows a picture, and not only its tab.
    bool isBlack()
    {
        return m_desktop->pixel({m_window.left() + 2, m_window.center().y()}) == qRgb(35, 40, 45) &&
               m_desktop->pixel(m_origin + QPoint(3, 3)) == s_black;
    }
    Kept kept() const
    {
        Kept result;
        const QDir folder(m_program->dataFolder() + u"/recovery"_s);
        for (const QString &entry : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QFile file(folder.filePath(entry + u"/state.json"_s));
            if (entry == u"damaged" || !file.open(QIODevice::ReadOnly))
                continue;
            const QJsonObject state = QJsonDocument::fromJson(file.readAll()).object();
            if (QImage(folder.filePath(entry + u"/picture.png"_s)).isNull())
                continue;
            ++result.pictures;
            result.names.append(state[u"name"_s].toString());
            for (const QJsonValue shape : state[u"shapes"_s].toArray())
                ++(shape[u"text"_s].toString().isEmpty() ? result.shapes : result.texts);
        }
        return result;
    }
    // In the part of each picture that is black at first.
    QPoint place(int round) const
    {
        constexpr int inRow = 80;
        return m_origin + QPoint(10 + 10 * (round % inRow), 60 + 14 * (round / inRow));
    }
    /// Marks up the current picture at a place of this round's own, and sees it there.
    bool markUp(int round)
    {
        pressButton(s_rectangle);
        const QPoint at = place(round);
        return m_desktop->drag(at, at + QPoint(5, 5),
                               [&] { return isRed(m_desktop->pixel(at + QPoint(0, 3))); });
    }
    void open(const QString &path)
    {
        m_program->call(u"org.freedesktop.Application"_s, u"Open"_s,
                        {QStringList{QUrl::fromLocalFile(path).toString()}, QVariantMap()});
    }
    void start(Work work, int round)
    {
        const QPoint at = place(round) + QPoint(0, 200);
        if (work == Grab) {
            hotKey(XK_s);
        } else if (work == Draw) {
            pressButton(s_rectangle);
            m_desktop->drag(at, at + QPoint(9, 9), [] { return true; });
        } else if (work == Type) {
            pressButton(s_text);
            m_desktop->click(at);
            m_desktop->type(u"x"_s);
        } else if (work == Open) {
            open(m_desktop->home() + u"/other.png"_s);
        } else if (work == Save) {
            m_desktop->key(XK_s, {XK_Control_L});
        } else {
            m_desktop->closeWindow(m_program->mainWindow());
        }
    }
};

QTEST_GUILESS_MAIN(TestKills)
#include "test_kills.moc"
