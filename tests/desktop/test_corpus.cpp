// All that scrolls, taken from programs of several toolkits whose rows have their numbers as bar
// codes: each row is to be there once, whole and in its place, and the program to stand where it
// stood. Prints a table of what came out.
//
// SNAP_LONG=1 takes each kind of each toolkit under each window manager. SNAP_PICTURES=FOLDER keeps
// the pictures, and what the screen showed when one was done.

#include "corpus/rowcheck.h"
#include "snapworkbench.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <cstdio>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QRect s_mainPlace(1430, 60, 950, 650);
const QPoint s_otherPlace(60, 50);  // and clear of the main window
constexpr int s_captureLimit = 90000;
constexpr int s_clicksDown = 9;
constexpr int s_rows = 150;
constexpr int s_edge = 2;  // pixels by which a picture may miss the view, or a frame be in it
constexpr int s_overlayBar = 8;
constexpr int s_headerInset = 6;    // borders and shadows of a header
constexpr int s_headerWidth = 150;  // with its title
constexpr QRgb s_outline = qRgb(61, 165, 244);
constexpr QRgb s_late = 0xffc9c7cb;  // where a picture of the page has not come

// "kind toolkit windowmanager top|midst option...": the options are those of the programs, and
// "told" where the area is asked for through the accessibility interface.
struct Case {
    explicit Case(const QString &line)
        : options(line.split(u' ')), kind(options.takeFirst()), toolkit(options.takeFirst()),
          windowManager(options.takeFirst()), fromTop(options.takeFirst() == u"top"),
          isTold(options.removeAll(u"told"_s) > 0)
    {
    }

    QStringList options;
    QString kind;
    QString toolkit;
    QString windowManager;
    bool fromTop;
    bool isTold;
};

// Those of one window manager follow each other, and share the desktop.
const QStringList s_windowManagers{u"xfwm4"_s, u"openbox"_s, u"xfwm4+c"_s};

const QStringList s_always{
    u"list gtk3 xfwm4 midst rows=300 bar status"_s,
    u"editor gtk3 xfwm4 top"_s,
    u"table qt openbox midst"_s,
    u"tree qt openbox top"_s,
    u"zebra gtk4 xfwm4+c top"_s,
    u"web webkit xfwm4+c midst rows=60"_s,
};

const QStringList s_variants{
    u"list gtk3 xfwm4 top rows=600"_s,
    u"list gtk3 xfwm4 midst rows=1200"_s,
    u"list gtk3 openbox top menu"_s,
    u"list qt xfwm4+c midst menu"_s,
    u"table qt openbox top gap"_s,
    u"zebra qt xfwm4+c midst banner status"_s,
    u"web webkit xfwm4+c top banner smooth"_s,
    u"table qt openbox midst gap told"_s,
    u"zebra qt openbox top told"_s,
    u"editor gtk3 openbox midst told"_s,
};

QStringList cases()
{
    QStringList result = s_always;
    if (qEnvironmentVariableIsSet("SNAP_LONG")) {
        result += s_variants;
        bool fromTop = true;
        const QStringList kinds{u"list"_s, u"table"_s, u"zebra"_s, u"tree"_s, u"editor"_s};
        for (const QString &windowManager : s_windowManagers) {
            const auto add = [&](const QString &what) {
                fromTop = !fromTop;
                result.append(
                    u"%1 %2 %3"_s.arg(what, windowManager, fromTop ? u"top"_s : u"midst"_s));
            };
            for (const QString &toolkit : {u"gtk3"_s, u"gtk4"_s, u"qt"_s}) {
                for (const QString &kind : kinds)
                    add(kind + u' ' + toolkit);
            }
            add(u"web webkit"_s);
            fromTop = !fromTop;
        }
    }
    const auto place = [](const QString &line) {
        return 2 * s_windowManagers.indexOf(Case(line).windowManager) + (Case(line).isTold ? 1 : 0);
    };
    std::stable_sort(result.begin(), result.end(),
                     [&](const QString &a, const QString &b) { return place(a) < place(b); });
    result.removeDuplicates();
    return result;
}

}  // namespace

class TestCorpus : public QObject
{
    Q_OBJECT

private slots:
    void takesAll_data();
    void takesAll();
    void cleanup();
    void cleanupTestCase();

private:
    struct View {
        QRect area{};
        int header = 0;
    };

    bool startDesktop(const Case &one);
    bool startProgram(const Case &one);
    bool openPick();
    QList<CodedRow> rowsInSight() { return codedRows(m_desktop->screenshot().copy(m_view.area)); }
    /// Waits until the view shows rows, and the same twice.
    bool waitForRest();
    bool isPutBack(const QList<CodedRow> &before);
    /// What is wrong with a picture; `before` is what the view showed. A scroll bar that lies over
    /// the view is `overlay` wide, and may be left out.
    QStringList faults(const QImage &picture, const QImage &before, int rows, int overlay);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    QString m_windowManager;
    bool m_isTold = false;
    bool m_asked = false;
    QProcess *m_other = nullptr;
    View m_view;
    QStringList m_table;
};

void TestCorpus::cleanup()
{
    if (m_other) {
        m_other->terminate();
        m_other->waitForFinished();
        m_other = nullptr;
    }
    if (QTest::currentTestFailed() && m_program && m_program->grabState() != u"Idle") {
        m_program.reset();
        m_desktop.reset();
        m_windowManager.clear();
    }
}

void TestCorpus::cleanupTestCase()
{
    m_program.reset();
    m_desktop.reset();
    std::printf("%-52s %-11s %-5s %5s  %s\n", "what scrolls", "rows", "back", "s", "wrong");
    for (const QString &line : m_table)
        std::printf("%s\n", qPrintable(line));
}

bool TestCorpus::startDesktop(const Case &one)
{
    if (m_windowManager == one.windowManager && m_isTold == one.isTold)
        return true;
    m_program.reset();
    m_desktop.reset();
    TestDesktop::Options options{.size = {2400, 900}, .windowManager = {one.windowManager}};
    if (one.windowManager != u"openbox")
        options.windowManager = {u"xfwm4"_s, one.windowManager == u"xfwm4" ? u"--compositor=off"_s
                                                                           : u"--compositor=on"_s};
    m_desktop = std::make_unique<TestDesktop>(options);
    if (!m_desktop->isReady())
        return false;
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings({{u"RunMinimized"_s, u"1"_s}});
    m_asked = false;
    m_windowManager = one.windowManager;
    m_isTold = one.isTold;
    return m_program->startAndWait();
}

bool TestCorpus::startProgram(const Case &one)
{
    QProcessEnvironment environment = m_desktop->environment();
    if (one.isTold)
        environment.remove(u"NO_AT_BRIDGE"_s);
    environment.insert(u"GSK_RENDERER"_s, u"cairo"_s);
    environment.insert(u"WEBKIT_DISABLE_COMPOSITING_MODE"_s, u"1"_s);
    const QStringList arguments = QStringList{one.kind} + one.options;
    if (one.toolkit == u"qt") {
        m_other = m_desktop->start(QStringLiteral(SNAP_CORPUS), arguments, environment);
    } else {
        const QString toolkit = one.toolkit == u"webkit" ? u"gtk3"_s : one.toolkit;
        m_other = m_desktop->start(
            u"/usr/bin/python3"_s,
            QStringList{QStringLiteral(SNAP_CORPUS_GTK), toolkit} + arguments, environment);
    }
    if (!m_other || !waitFor([&] { return m_other->canReadLine(); }))
        return false;
    const QStringList told = QString::fromLatin1(m_other->readLine()).simplified().split(u' ');
    if (told.size() != 6 || !waitFor([&] { return m_desktop->activeTitle() == u"corpus"; }))
        return false;
    m_view = {};
    m_view.header = told[5].toInt();
    const auto window = [&] {
        for (const TestDesktop::Window &candidate : m_desktop->windows()) {
            if (candidate.id == m_desktop->activeWindow())
                return candidate;
        }
        return TestDesktop::Window();
    };
    m_desktop->placeWindow(window(), QRect(s_otherPlace, window().area.size()));
    // A frame moves it somewhat.
    const auto isPlaced = [&] {
        const QPoint off = window().area.topLeft() - s_otherPlace;
        return off.manhattanLength() < 100;
    };
    if (!waitFor(isPlaced))
        return false;
    m_view.area = QRect(told[1].toInt(), told[2].toInt(), told[3].toInt(), told[4].toInt())
                      .translated(window().area.topLeft());
    return waitForRest();
}

bool TestCorpus::waitForRest()
{
    QImage last;
    return waitFor([&] {
        const QImage now = m_desktop->screenshot().copy(m_view.area);
        const bool isAtRest = now == last && !codedRows(now).isEmpty();
        last = now;
        if (!isAtRest)
            QTest::qWait(100);
        return isAtRest;
    });
}

bool TestCorpus::openPick()
{
    const auto hotKey = [&] { m_desktop->key(XK_w, {XK_Control_L, XK_Alt_L}); };
    const auto before = m_desktop->windows();
    hotKey();
    if (!std::exchange(m_asked, true)) {
        const auto question = m_desktop->waitForNewWindow(before);
        if (!question.id || !m_desktop->waitForFocus(question))
            return false;
        if (m_isTold) {
            // Which starts nothing yet.
            m_desktop->key(XK_Return);
            if (!m_program->waitForState(u"Idle"_s))
                return false;
            hotKey();
        } else {
            m_desktop->key(XK_Tab);
            m_desktop->key(XK_space);
        }
    }
    // The area's outline.
    const QRect around = m_view.area.adjusted(-s_edge, 0, s_edge, 0);
    const auto isOutlined = [&] {
        const QImage row =
            m_desktop->screenshot().copy(around.x(), around.center().y(), around.width(), 1);
        return row.pixel(s_edge, 0) == s_outline ||
               row.pixel(around.width() - s_edge - 1, 0) == s_outline;
    };
    return m_program->waitForState(u"Picking"_s) && (!m_isTold || waitFor(isOutlined));
}

// The main window comes in front of it, and is put aside.
bool TestCorpus::isPutBack(const QList<CodedRow> &before)
{
    m_desktop->placeWindow(m_program->mainWindow(), s_mainPlace);
    return waitFor([&] { return !m_program->mainWindow().area.intersects(m_view.area); }) &&
           waitForRest() && waitFor([&] { return rowsInSight() == before; }, 2000);
}

QStringList TestCorpus::faults(const QImage &picture, const QImage &before, int rows, int overlay)
{
    const QList<CodedRow> taken = codedRows(picture);
    const QList<CodedRow> shown = codedRows(before);
    QStringList result;
    const RowFaults rowFaults = faultsOf(taken, rows);
    if (!rowFaults.isEmpty())
        result.append(rowFaults.text());
    const auto common = std::find_if(taken.begin(), taken.end(), [&](const CodedRow &row) {
        return row.number == shown[1].number;
    });
    if (common == taken.end())
        return result;
    // Where the view's left edge lies in the picture.
    const int left = common->at.x() - shown[1].at.x();
    const int right = picture.width() - left - before.width();
    if (left < -s_edge)
        result.append(u"%1 px cut off on the left"_s.arg(-left));
    if (right < -s_edge - overlay)
        result.append(u"%1 px cut off on the right"_s.arg(-right));
    if (left > s_edge || right > s_edge)
        result.append(u"%1 px too wide"_s.arg(std::max(left, right)));
    if (m_view.header > 0) {
        const QRect strip(2, s_headerInset, s_headerWidth, m_view.header - 2 * s_headerInset);
        const int headers = countStrips(picture, before.copy(strip), left + strip.x());
        if (headers != 1)
            result.append(u"%1 headers"_s.arg(headers));
    }
    int late = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            late += picture.pixel(x, y) == s_late ? 1 : 0;
    }
    if (late > 0)
        result.append(u"%1 px not there yet"_s.arg(late));
    return result;
}

void TestCorpus::takesAll_data()
{
    QTest::addColumn<QString>("line");
    for (const QString &line : cases())
        QTest::newRow(qPrintable(line)) << line;
}

void TestCorpus::takesAll()
{
    QFETCH(QString, line);
    const Case one(line);
    const QStringList told = one.options.filter(u"rows="_s);
    const int rows = told.isEmpty() ? s_rows : told.first().section(u'=', 1).toInt();
    m_table.append(u"%1 came to no end"_s.arg(line, -52));
    QVERIFY(startDesktop(one));
    QVERIFY(startProgram(one));
    m_desktop->movePointer(m_view.area.center());
    const QList<CodedRow> atTop = rowsInSight();
    for (int i = 0; i < s_clicksDown && !one.fromTop; ++i) {
        m_desktop->press(5);
        m_desktop->release(5);
    }
    QVERIFY(one.fromTop || waitFor([&] { return rowsInSight() != atTop; }));
    QVERIFY(waitForRest());
    const QImage before = m_desktop->screenshot().copy(m_view.area);
    QVERIFY(openPick());
    QElapsedTimer clock;
    clock.start();
    m_desktop->key(XK_Return);
    QVERIFY(m_program->waitForState(u"Scrolling"_s));
    const bool isDone = m_program->waitForState(u"Idle"_s, s_captureLimit);
    const double seconds = static_cast<double>(clock.elapsed()) / 1000;
    const QDir kept(qEnvironmentVariable("SNAP_PICTURES"));
    const QString name = QString(line).replace(u' ', u'-');
    if (qEnvironmentVariableIsSet("SNAP_PICTURES"))
        m_desktop->screenshot().save(kept.filePath(name + u"-screen.png"_s));
    QVERIFY(isDone);
    if (!waitFor([&] { return m_desktop->activeTitle().startsWith(u"untitled"); }))
        qWarning() << m_desktop->activeTitle() << m_program->mainWindow().title;
    QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"untitled"); }));
    const QImage picture = m_program->saveAs(m_desktop->home() + u"/"_s + name + u".png"_s);
    QVERIFY(!picture.isNull());
    if (qEnvironmentVariableIsSet("SNAP_PICTURES"))
        picture.save(kept.filePath(name + u".png"_s));
    m_desktop->key(XK_w, {XK_Control_L});
    QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));
    const bool isBack = isPutBack(codedRows(before));
    const bool isOverlaid = one.toolkit.startsWith(u"gtk") && !one.options.contains(u"bar");
    QStringList wrong = faults(picture, before, rows, isOverlaid ? s_overlayBar : 0);
    m_table.last() = QString::asprintf(
        "%-52s %5d/%-5d %-5s %5.1f  %s", qPrintable(line), faultsOf(codedRows(picture), rows).found,
        rows, isBack ? "yes" : "NO", seconds, qPrintable(wrong.join(u", "_s)));
    if (!isBack)
        wrong.append(u"not put back"_s);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u", "_s)));
}

QTEST_GUILESS_MAIN(TestCorpus)
#include "test_corpus.moc"
