// The program on a desktop without X: its window, its grabs and what it leaves to others, with what
// the compositor itself shows as the measure.

#include "pattern.h"
#include "snapprogram.h"
#include "swaydesktop.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString s_first = u"HEADLESS-1"_s;
const QString s_title = u"Snap Workbench"_s;

// Whether a picture shows the pattern painted at `painted` pixels, pixel for pixel or, where the
// compositor made it smaller, by the colours that tell the place.
bool showsPattern(const QImage &shown, const QSize &painted)
{
    const QImage expected = pattern(painted);
    if (painted == shown.size())
        return shown == expected;
    const qreal ratio = qreal(painted.width()) / shown.width();
    const auto isNear = [ratio](int colour, int place) {
        constexpr int edge = 4;  // where the colours begin anew, neighbours blend
        const int told = int((place + 0.5) * ratio) & 0xff;
        return told < edge || told > 0xff - edge || qAbs(colour - told) <= 1;
    };
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QRgb pixel = shown.pixel(x, y);
            if (!isNear(qRed(pixel), x) || !isNear(qGreen(pixel), y))
                return false;
        }
    }
    return true;
}

}  // namespace

class TestSway : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString lack = SwayDesktop::lack();
        if (lack.isEmpty())
            return;
        QVERIFY2(!qEnvironmentVariableIsSet("SNAP_NO_SKIP"), qPrintable(lack));
        QSKIP(qPrintable(lack));
    }
    void cleanup()
    {
        m_program.reset();
        m_sway.reset();
    }

    // The measure itself: what is painted comes back, and input arrives, where it should.
    void desktop()
    {
        const auto check = [this](const char *row, const SwayDesktop::Output &output) {
            qInfo("%s", row);
            m_sway = std::make_unique<SwayDesktop>(QList<SwayDesktop::Output>{{}, output});
            QVERIFY2(m_sway->isReady(), qPrintable(m_sway->said()));
            const QString name = u"HEADLESS-2"_s;
            const QRect screen = m_sway->area(name);
            QCOMPARE(screen.topLeft(), output.position);
            const QRect area(screen.topLeft() + QPoint(80, 60), QSize(402, 304));
            QProcess *other = m_sway->startPattern(area);
            QVERIFY(other);
            const auto inPixels = [&](int logical) { return int(logical * output.scale); };
            const QRect pixels(inPixels(80), inPixels(60), inPixels(402), inPixels(304));
            const QSize painted = area.size() * int(std::ceil(output.scale));
            QImage shown;
            const auto isShown = [&] {
                shown = m_sway->picture(name).copy(pixels);
                return showsPattern(shown, pixels.size()) || showsPattern(shown, painted);
            };
            QVERIFY(waitFor(isShown));
            m_sway->click(area.topLeft() + QPoint(33, 44));
            m_sway->key(XKB_KEY_x);
            QByteArray heard;
            QVERIFY(waitFor([&] {
                heard += other->readAll();
                return heard.contains("press 33,44\nkey 88\n");
            }));
        };
        check("scale 1", {.position = {1600, 0}});
        check("scale 1.5", {.position = {1600, 0}, .scale = 1.5});
        check("scale 2", {.mode = {3840, 2160}, .position = {1600, 0}, .scale = 2});
        check("turned", {.position = {1600, 0}, .transform = u"90"_s});
        check("turned and mirrored", {.position = {1600, 0}, .transform = u"flipped-270"_s});
    }

    void secondStart()
    {
        QVERIFY(begin());
        const QProcess *second = m_program->start();
        QVERIFY(second && waitFor([&] { return second->state() == QProcess::NotRunning; }));
        QCOMPARE(second->exitCode(), 0);
        QVERIFY(isTitled(s_title));
    }

private:
    bool begin(const QList<SwayDesktop::Output> &outputs = {{}},
               const QMap<QString, QString> &settings = {})
    {
        m_sway = std::make_unique<SwayDesktop>(outputs);
        m_program = std::make_unique<SnapProgram>(*m_sway);
        m_program->writeSettings(settings);
        return m_sway->isReady() && m_program->start() && isTitled(s_title);
    }
    bool isTitled(const QString &title)
    {
        return waitFor([&] {
            return m_sway->find([&](const auto &window) { return window.title == title; }).id != 0;
        });
    }

    std::unique_ptr<SwayDesktop> m_sway;
    std::unique_ptr<SnapProgram> m_program;
};

QTEST_GUILESS_MAIN(TestSway)
#include "test_sway.moc"
