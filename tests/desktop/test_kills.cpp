// The program is killed at random moments of its work, and nothing that is older than a second is
// lost.

#include "snapworkbench.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTest>
#include <QUrl>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

// Buttons of the strip at the window's foot: from its left edge.
constexpr int s_rectangle = 59;
constexpr int s_text = 179;
constexpr int s_stripHeight = 25;  // of their middle above the window's bottom

const QRgb s_frame = qRgb(35, 40, 45);
const QRgb s_black = qRgb(0, 0, 0);

constexpr int s_promise = 1000;  // ms
constexpr int s_longest = 900;   // ms between what is under way and the kill

enum Work { Grab, Draw, Type, Open, Save, Quit, WorkCount };

// What lies on the disk of unsaved pictures.
struct Kept {
    int pictures = 0;
    int shapes = 0;
    QStringList texts{};
    QStringList names{};
};

bool isRed(QRgb pixel) { return qRed(pixel) > 150 && qGreen(pixel) < 100; }

}  // namespace

class TestKills : public QObject
{
    Q_OBJECT

private slots:
    void killedAtAnyMoment();

private:
    bool start();
    Kept kept() const;
    QPoint place(int round) const;
    /// Whether the window shows a picture, and not only its tab.
    bool isBlack() const
    {
        return m_desktop->pixel({m_window.left() + 2, m_window.center().y()}) == s_frame &&
               m_desktop->pixel(m_origin + QPoint(3, 3)) == s_black;
    }
    void pressButton(int x) const;
    /// Marks up the current picture at a place of this round's own, and sees it there.
    bool markUp(int round) const;
    bool open(const QString &path);
    void begin(Work work, int round);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    QRect m_window;
    QPoint m_origin;  ///< of the shown picture, on the screen
};

bool TestKills::start()
{
    // Also one that starts minimised comes to the front with what came back.
    const bool isBack = kept().pictures > 0;
    return m_program->start() && waitFor([&] {
               const TestDesktop::Window window = m_program->mainWindow();
               m_window = window.area;
               return isBack ? window.viewable && window.title == m_desktop->activeTitle() &&
                                   window.title.endsWith(u" * - Snap Workbench"_s) && isBlack()
                             : window.id != XCB_NONE;
           });
}

Kept TestKills::kept() const
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
        for (const QJsonValue shape : state[u"shapes"_s].toArray()) {
            const QString text = shape[u"text"_s].toString();
            if (text.isEmpty())
                ++result.shapes;
            else
                result.texts.append(text);
        }
    }
    return result;
}

// In the part of each picture that is black at first.
QPoint TestKills::place(int round) const
{
    constexpr int inRow = 80;
    return m_origin + QPoint(10 + 10 * (round % inRow), 60 + 14 * (round / inRow));
}

void TestKills::pressButton(int x) const
{
    m_desktop->click(m_window.bottomLeft() + QPoint(x, -s_stripHeight));
}

bool TestKills::markUp(int round) const
{
    pressButton(s_rectangle);
    const QPoint at = place(round);
    return m_desktop->drag(at, at + QPoint(5, 5),
                           [&] { return isRed(m_desktop->pixel(at + QPoint(0, 3))); });
}

bool TestKills::open(const QString &path)
{
    m_program->call(u"org.freedesktop.Application"_s, u"Open"_s,
                    {QStringList{QUrl::fromLocalFile(path).toString()}, QVariantMap()});
    return m_program->waitForTitle(QFileInfo(path).fileName() + u" - Snap Workbench"_s) &&
           waitFor([&] { return isBlack(); });
}

void TestKills::begin(Work work, int round)
{
    switch (work) {
    case Grab:
        m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
        break;
    case Draw:
        pressButton(s_rectangle);
        m_desktop->drag(place(round) + QPoint(0, 200), place(round) + QPoint(9, 209),
                        [] { return true; });
        break;
    case Type:
        pressButton(s_text);
        m_desktop->click(place(round) + QPoint(0, 200));
        m_desktop->type(u"x"_s);
        break;
    case Open:
        m_program->call(
            u"org.freedesktop.Application"_s, u"Open"_s,
            {QStringList{QUrl::fromLocalFile(m_desktop->home() + u"/other.png"_s).toString()},
             QVariantMap()});
        break;
    case Save:
        m_desktop->key(XK_s, {XK_Control_L});
        break;
    case Quit:
        m_desktop->closeWindow(m_program->mainWindow());
        break;
    default:
        break;
    }
}

void TestKills::killedAtAnyMoment()
{
    const bool isLong = qEnvironmentVariableIsSet("SNAP_LONG");
    const int rounds = isLong ? 500 : 20;
    const uint seed = isLong ? QRandomGenerator::global()->generate() : 12;
    QRandomGenerator random(seed);
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{});
    QVERIFY(m_desktop->isReady());
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings(
        {{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"1"_s}, {u"LineWidth"_s, u"3"_s}});
    QVERIFY(start());
    QImage black(1400, 900, QImage::Format_RGB32);
    black.fill(Qt::black);
    QVERIFY(black.save(m_desktop->home() + u"/other.png"_s));
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    QVERIFY(m_program->waitForTitle(u"untitled * - Snap Workbench"_s));
    m_window = m_program->mainWindow().area;
    const QPoint middle = m_window.center();
    m_origin = middle;
    QVERIFY(waitFor([&] { return isBlack() && kept().pictures == 1; }));
    const QImage screen = m_desktop->screenshot();
    while (screen.pixel(m_origin - QPoint(1, 0)) == s_black)
        m_origin.rx() -= 1;
    while (screen.pixel(m_origin - QPoint(0, 1)) == s_black)
        m_origin.ry() -= 1;

    for (int round = 0; round < rounds; ++round) {
        const auto work = static_cast<Work>(random.bounded(WorkCount));
        const QByteArray trace = "seed " + QByteArray::number(seed) + ", round " +
                                 QByteArray::number(round) + ", work " + QByteArray::number(work);
        const Kept before = kept();
        const QString path = m_desktop->home() + u'/' + QString::number(round) + u".png"_s;
        if (work == Save) {
            QVERIFY(black.save(path));
            QVERIFY2(open(path), trace.constData());
        }
        QVERIFY2(markUp(round), trace.constData());
        QTest::qWait(s_promise);
        begin(work, round);
        QTest::qWait(random.bounded(s_longest));
        m_program->process()->kill();
        QVERIFY(m_program->process()->waitForFinished());

        const Kept after = kept();
        bool isKept = after.pictures >= qMax(before.pictures, 1) && after.shapes > before.shapes &&
                      after.texts.size() >= before.texts.size();
        if (work == Save && !after.names.contains(path)) {
            const QPoint corner = place(round) - m_origin;
            isKept = isRed(QImage(path).pixel(corner + QPoint(0, 3))) &&
                     after.pictures == before.pictures && after.shapes == before.shapes;
        }
        QVERIFY2(isKept, trace.constData());
        QVERIFY2(start(), trace.constData());
    }
}

QTEST_GUILESS_MAIN(TestKills)
#include "test_kills.moc"
