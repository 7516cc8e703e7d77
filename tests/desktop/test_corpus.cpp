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
constexpr int s_captureLimit = 120000;
constexpr int s_clicksDown = 9;
constexpr int s_rows = 150;
constexpr int s_edge = 2;  // pixels by which a picture may miss the view, or a frame be in it
constexpr int s_headerInset = 6;     // borders and shadows of a header
constexpr int s_headerWidth = 150;   // with its title
constexpr QRgb s_late = 0xffc9c7cb;  // where a picture of the page has not come

struct Case {
    QString kind{};
    QString toolkit{};
    QStringList options{};
    QString windowManager{};
    bool isShort = false;  // taken each time
    bool fromTop = true;

    QString name() const
    {
        return (QStringList{kind} + options).join(u' ') + u", "_s + toolkit + u", "_s +
               windowManager + (fromTop ? u""_s : u", midst"_s);
    }
};

// What a case needs of the desktop; a new one is started where it differs.
QStringList windowManagerCommand(const QString &name)
{
    if (name == u"openbox")
        return {name};
    return {u"xfwm4"_s, name == u"xfwm4" ? u"--compositor=off"_s : u"--compositor=on"_s};
}

QList<Case> cases()
{
    const QString composited = u"xfwm4+c"_s;
    const QString plain = u"xfwm4"_s;
    const QString openbox = u"openbox"_s;
    const QList<Case> short_{
        {.kind = u"list"_s, .toolkit = u"gtk3"_s, .windowManager = plain, .fromTop = false},
        {.kind = u"editor"_s, .toolkit = u"gtk3"_s, .windowManager = plain},
        {.kind = u"table"_s, .toolkit = u"qt"_s, .windowManager = openbox, .fromTop = false},
        {.kind = u"tree"_s, .toolkit = u"qt"_s, .windowManager = openbox},
        {.kind = u"zebra"_s, .toolkit = u"gtk4"_s, .windowManager = composited},
        {.kind = u"web"_s, .toolkit = u"webkit"_s, .windowManager = composited, .fromTop = false},
    };
    // What went wrong once.
    const QList<Case> variants{
        {.kind = u"list"_s,
         .toolkit = u"gtk3"_s,
         .options = {u"rows=600"_s},
         .windowManager = plain},
        {.kind = u"list"_s,
         .toolkit = u"gtk3"_s,
         .options = {u"rows=300"_s, u"width=1200"_s, u"bar"_s, u"status"_s},
         .windowManager = plain,
         .fromTop = false},
        {.kind = u"list"_s, .toolkit = u"gtk3"_s, .options = {u"menu"_s}, .windowManager = openbox},
        {.kind = u"table"_s, .toolkit = u"qt"_s, .options = {u"gap"_s}, .windowManager = openbox},
        {.kind = u"list"_s,
         .toolkit = u"qt"_s,
         .options = {u"menu"_s},
         .windowManager = composited},
        {.kind = u"zebra"_s,
         .toolkit = u"qt"_s,
         .options = {u"banner"_s, u"status"_s},
         .windowManager = composited,
         .fromTop = false},
        {.kind = u"web"_s,
         .toolkit = u"webkit"_s,
         .options = {u"banner"_s, u"smooth"_s},
         .windowManager = composited},
        {.kind = u"list"_s,
         .toolkit = u"gtk3"_s,
         .options = {u"rows=1200"_s},
         .windowManager = plain},
    };
    QList<Case> result;
    for (const QString &windowManager : {plain, openbox, composited}) {
        for (Case one : short_) {
            one.isShort = true;
            if (one.windowManager == windowManager)
                result.append(one);
        }
        if (!qEnvironmentVariableIsSet("SNAP_LONG"))
            continue;
        for (const Case &one : variants) {
            if (one.windowManager == windowManager)
                result.append(one);
        }
        for (const QString &toolkit : {u"gtk3"_s, u"gtk4"_s, u"qt"_s, u"webkit"_s}) {
            for (const QString &kind :
                 {u"list"_s, u"table"_s, u"zebra"_s, u"tree"_s, u"editor"_s, u"web"_s}) {
                const auto isIt = [&](const Case &one) {
                    return one.kind == kind && one.toolkit == toolkit && one.options.isEmpty() &&
                           one.windowManager == windowManager;
                };
                if ((kind == u"web") == (toolkit == u"webkit") &&
                    std::none_of(result.begin(), result.end(), isIt))
                    result.append({.kind = kind,
                                   .toolkit = toolkit,
                                   .windowManager = windowManager,
                                   .fromTop = result.size() % 2 == 0});
            }
        }
    }
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

    bool startDesktop(const QString &windowManager);
    bool startProgram(const Case &one);
    bool openPick();
    QList<CodedRow> rowsInSight() { return codedRows(m_desktop->screenshot().copy(m_view.area)); }
    /// Waits until the view shows rows, and the same twice.
    bool waitForRest();
    bool isPutBack(const QList<CodedRow> &before);
    /// What is wrong with a picture; `before` is what the view showed.
    QStringList faults(const QImage &picture, const QImage &before, int rows);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    QString m_windowManager;
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

bool TestCorpus::startDesktop(const QString &windowManager)
{
    if (m_windowManager == windowManager)
        return true;
    m_program.reset();
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{
        .size = {2400, 900}, .windowManager = windowManagerCommand(windowManager)});
    if (!m_desktop->isReady())
        return false;
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings({{u"RunMinimized"_s, u"1"_s}});
    m_asked = false;
    m_windowManager = windowManager;
    return m_program->startAndWait();
}

bool TestCorpus::startProgram(const Case &one)
{
    QProcessEnvironment environment = m_desktop->environment();
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
    const auto before = m_desktop->windows();
    m_desktop->key(XK_w, {XK_Control_L, XK_Alt_L});
    if (!std::exchange(m_asked, true)) {
        const auto question = m_desktop->waitForNewWindow(before);
        if (!question.id || !m_desktop->waitForFocus(question))
            return false;
        m_desktop->key(XK_Tab);
        m_desktop->key(XK_space);
    }
    return m_program->waitForState(u"Picking"_s);
}

// The main window comes in front of it, and is put aside.
bool TestCorpus::isPutBack(const QList<CodedRow> &before)
{
    m_desktop->placeWindow(m_program->mainWindow(), s_mainPlace);
    return waitFor([&] { return !m_program->mainWindow().area.intersects(m_view.area); }) &&
           waitForRest() && waitFor([&] { return rowsInSight() == before; }, 2000);
}

QStringList TestCorpus::faults(const QImage &picture, const QImage &before, int rows)
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
    if (right < -s_edge)
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
    QTest::addColumn<qsizetype>("index");
    const QList<Case> all = cases();
    for (qsizetype i = 0; i < all.size(); ++i)
        QTest::newRow(qPrintable(all[i].name())) << i;
}

void TestCorpus::takesAll()
{
    QFETCH(qsizetype, index);
    const Case one = cases()[index];
    int rows = s_rows;
    for (const QString &option : one.options) {
        if (option.startsWith(u"rows="))
            rows = option.section(u'=', 1).toInt();
    }
    QVERIFY(startDesktop(one.windowManager));
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
    const QString name = one.name().replace(u", "_s, u"-"_s).replace(u' ', u'_');
    if (qEnvironmentVariableIsSet("SNAP_PICTURES"))
        m_desktop->screenshot().save(kept.filePath(name + u"-screen.png"_s));
    QVERIFY(isDone);
    if (!waitFor([&] { return m_desktop->activeTitle().startsWith(u"untitled"); }))
        qWarning() << m_desktop->activeTitle() << m_program->mainWindow().title;
    QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"untitled"); }));
    const QImage picture = m_program->saveAs(m_desktop->home() + u"/%1.png"_s.arg(index));
    QVERIFY(!picture.isNull());
    if (qEnvironmentVariableIsSet("SNAP_PICTURES"))
        picture.save(kept.filePath(name + u".png"_s));
    m_desktop->key(XK_w, {XK_Control_L});
    QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));
    const bool isBack = isPutBack(codedRows(before));
    QStringList wrong = faults(picture, before, rows);
    m_table.append(QString::asprintf("%-52s %5d/%-5d %-5s %5.1f  %s", qPrintable(one.name()),
                                     faultsOf(codedRows(picture), rows).found, rows,
                                     isBack ? "yes" : "NO", seconds,
                                     qPrintable(wrong.join(u", "_s))));
    if (!isBack)
        wrong.append(u"not put back"_s);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u", "_s)));
}

QTEST_GUILESS_MAIN(TestCorpus)
#include "test_corpus.moc"
