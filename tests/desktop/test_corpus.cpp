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
#include <QSet>
#include <QStandardPaths>
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
constexpr int s_rounding = 6;  // pixels
constexpr int s_rows = 150;
constexpr int s_columns = 24;
constexpr int s_edge = 2;  // pixels by which a picture may miss the view, or a frame be in it
constexpr int s_overlayBar = 8;
constexpr int s_headerInset = 6;    // borders and shadows of a header
constexpr int s_headerWidth = 150;  // with its title
constexpr QRgb s_outline = qRgb(61, 165, 244);
constexpr int s_pageHeaderHeight = 48;
constexpr QRgb s_pageHeader = 0xff224455;
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
    u"icons gtk3 xfwm4 midst rows=400"_s,
    u"icons qt openbox top rows=400"_s,
    u"wide qt xfwm4 midst rows=1440"_s,
    u"wide gtk3 openbox midst rows=1440 bar"_s,
    u"lines gtk3 xfwm4+c midst"_s,
    u"wide qt openbox midst rows=1440 frozen"_s,
    u"wide qt openbox top rows=1440 told frozen"_s,
    u"list qt xfwm4+c midst menu"_s,
    u"table qt openbox top gap"_s,
    u"zebra qt xfwm4+c midst banner status"_s,
    u"web webkit xfwm4+c top banner smooth"_s,
    u"table qt openbox midst gap told"_s,
    u"zebra qt openbox top told"_s,
    u"editor gtk3 openbox midst told"_s,
};

QString chromium() { return QStandardPaths::findExecutable(u"chromium"_s); }

QStringList cases()
{
    QStringList result = s_always;
    if (qEnvironmentVariableIsSet("SNAP_LONG")) {
        result += s_variants;
        QStringList all;
        for (const QString &toolkit : {u"gtk3"_s, u"gtk4"_s, u"qt"_s}) {
            for (const QString &kind : {u"list"_s, u"table"_s, u"zebra"_s, u"tree"_s, u"editor"_s})
                all.append(kind + u' ' + toolkit);
        }
        all.append(u"web webkit"_s);
        if (!chromium().isEmpty())
            all.append(u"web chromium"_s);
        for (qsizetype i = 0; i < s_windowManagers.size(); ++i) {
            for (qsizetype j = 0; j < all.size(); ++j)
                result.append(u"%1 %2 %3"_s.arg(all[j], s_windowManagers[i],
                                                (i + j) % 2 == 0 ? u"top"_s : u"midst"_s));
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
    bool findPage(const QRect &window);
    bool openPick();
    QList<CodedRow> codesInSight() { return codesIn(m_desktop->screenshot().copy(m_view.area)); }
    /// Waits until the view shows rows, and the same twice.
    bool waitForRest();
    bool isPutBack(const Case &one, const QImage &before);
    /// What is wrong with a picture; `before` is what the view showed. A scroll bar that lies over
    /// the view is `overlay` wide, and may be left out.
    QStringList faults(const QImage &picture, const QImage &before, int count, int overlay);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    QString m_windowManager;
    bool m_isTold = false;
    bool m_asked = false;
    int m_columns = 0;  ///< of what is wider than its view
    bool m_isAcross = false;
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
    const QString script = QStringLiteral(SNAP_CORPUS_GTK);
    QStringList told;
    if (one.toolkit == u"chromium") {
        const QString page = m_desktop->home() + u"/page.html"_s;
        QProcess *writer = m_desktop->start(
            u"/usr/bin/python3"_s, QStringList{script, u"page"_s, page} + one.options, environment);
        if (!writer || !writer->waitForFinished())
            return false;
        m_other = m_desktop->start(chromium(),
                                   {u"--no-sandbox"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                                    u"--force-color-profile=srgb"_s, u"--window-size=640,560"_s,
                                    u"--user-data-dir="_s + m_desktop->home() + u"/chromium"_s,
                                    u"--app=file://"_s + page},
                                   environment);
    } else {
        const QString toolkit = one.toolkit == u"webkit" ? u"gtk3"_s : one.toolkit;
        m_other = one.toolkit == u"qt"
                      ? m_desktop->start(QStringLiteral(SNAP_CORPUS), arguments, environment)
                      : m_desktop->start(u"/usr/bin/python3"_s,
                                         QStringList{script, toolkit} + arguments, environment);
        if (!m_other || !waitFor([&] { return m_other->canReadLine(); }))
            return false;
        told = QString::fromLatin1(m_other->readLine()).simplified().split(u' ');
    }
    if (!waitFor([&] { return m_desktop->activeTitle() == u"corpus"; }))
        return false;
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
    m_view = {};
    if (told.size() != 6)
        return waitFor([&] { return findPage(window().area); }) && waitForRest();
    m_view.header = told[5].toInt();
    m_view.area = QRect(told[1].toInt(), told[2].toInt(), told[3].toInt(), told[4].toInt())
                      .translated(window().area.topLeft());
    return waitForRest();
}

// A browser tells nothing of itself, but the header of the page has a colour of its own.
bool TestCorpus::findPage(const QRect &window)
{
    const QImage shown = m_desktop->screenshot().copy(window);
    for (int y = 0; y < shown.height(); ++y) {
        int width = 0;
        int left = 0;
        for (int x = 0; x < shown.width(); ++x) {
            if (shown.pixel(x, y) == s_pageHeader && width++ == 0)
                left = x;
        }
        if (width < s_headerWidth)
            continue;
        m_view.header = s_pageHeaderHeight;
        m_view.area = QRect(left, y, width, shown.height() - y).translated(window.topLeft());
        return true;
    }
    return false;
}

bool TestCorpus::waitForRest()
{
    QImage last;
    return waitFor([&] {
        const QImage now = m_desktop->screenshot().copy(m_view.area);
        const bool isAtRest = now == last && !codesIn(now).isEmpty();
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
bool TestCorpus::isPutBack(const Case &one, const QImage &before)
{
    // A bar that lies over the view's end hides a part of what stands there.
    const QRect free(QPoint(), m_view.area.size() - QSize(0, s_overlayBar));
    const QList<CodedRow> wanted = codesIn(before.copy(free));
    m_desktop->placeWindow(m_program->mainWindow(), s_mainPlace);
    // One toolkit scrolls by parts of a row and rounds them as it lays its rows out: the same
    // clicks don't always lead to the same pixel.
    const int rounding = one.toolkit == u"gtk4" ? s_rounding : 0;
    const auto isBack = [&] {
        const QList<CodedRow> after = codesIn(m_desktop->screenshot().copy(m_view.area).copy(free));
        const auto found = std::find_if(after.begin(), after.end(), [&](const CodedRow &row) {
            return row.number == wanted[1].number;
        });
        return rounding == 0
                   ? after == wanted
                   : found != after.end() && std::abs(found->at.y() - wanted[1].at.y()) <= rounding;
    };
    return waitFor([&] { return !m_program->mainWindow().area.intersects(m_view.area); }) &&
           waitForRest() && waitFor(isBack, 2000);
}

QStringList TestCorpus::faults(const QImage &picture, const QImage &before, int count, int overlay)
{
    const QList<CodedRow> taken = codesIn(picture);
    const CodedRow shown = codesIn(before)[1];
    // As many as the programs put beside each other.
    const auto line = [](const QList<CodedRow> &codes) {
        const auto inLine = [&](const CodedRow &code) { return code.at.y() == codes[0].at.y(); };
        return static_cast<int>(std::count_if(codes.begin(), codes.end(), inLine));
    };
    const int columns = m_columns > 0 ? m_columns : line(codesIn(before));
    QStringList result = faultsOf(rowsOf(taken, columns, count), (count + columns - 1) / columns);
    const auto common = std::find_if(taken.begin(), taken.end(), [&](const CodedRow &code) {
        return code.number == shown.number;
    });
    if (common == taken.end())
        return result;
    // Where the view's left edge lies in the picture.
    const int left = common->at.x() - shown.at.x();
    const int right = m_isAcross ? 0 : picture.width() - left - before.width();
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
    m_isAcross = one.kind == u"wide" || one.kind == u"lines";
    m_columns = one.kind == u"wide" ? s_columns : 0;
    m_table.append(u"%1 came to no end"_s.arg(line, -52));
    QVERIFY(startDesktop(one));
    QVERIFY(startProgram(one));
    m_desktop->movePointer(m_view.area.center());
    const QList<CodedRow> atTop = codesInSight();
    for (int i = 0; i < s_clicksDown && !one.fromTop; ++i) {
        m_desktop->press(5);
        m_desktop->release(5);
    }
    QVERIFY(one.fromTop || waitFor([&] { return codesInSight() != atTop; }));
    QVERIFY(waitForRest());
    const QImage before = m_desktop->screenshot().copy(m_view.area);
    QVERIFY(openPick());
    QElapsedTimer clock;
    clock.start();
    m_desktop->key(XK_Return, m_isAcross ? QList<xcb_keysym_t>{XK_Shift_L} : QList<xcb_keysym_t>{});
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
    const bool isBack = isPutBack(one, before);
    const bool isOverlaid = QStringList{u"gtk3"_s, u"gtk4"_s, u"webkit"_s}.contains(one.toolkit) &&
                            !one.options.contains(u"bar");
    QStringList wrong = faults(picture, before, rows, isOverlaid ? s_overlayBar : 0);
    QSet<int> found;
    for (const CodedRow &code : codesIn(picture))
        found.insert(code.number);
    m_table.last() = u"%1 %2/%3 %4 %5  %6"_s.arg(line, -52)
                         .arg(found.size(), 5)
                         .arg(rows, -5)
                         .arg(isBack ? u"yes"_s : u"NO"_s, -5)
                         .arg(seconds, 5, 'f', 1)
                         .arg(wrong.join(u", "_s));
    if (m_other->state() != QProcess::Running)
        wrong.append(u"it has ended"_s);
    else if (!isBack)
        wrong.append(u"not put back"_s);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u", "_s)));
}

int main(int argc, char **argv)
{
    // All cases are one function.
    qputenv("QTEST_FUNCTION_TIMEOUT", "3000000");
    QCoreApplication application(argc, argv);
    TestCorpus test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_corpus.moc"
