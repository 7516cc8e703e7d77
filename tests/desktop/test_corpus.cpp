// All that scrolls, taken from programs of several toolkits whose rows have their numbers as bar
// codes: each row is to be there once, whole and in its place, and the program to stand where it
// stood. SNAP_PICTURES=FOLDER keeps the pictures.

#include "corpus/rowcheck.h"
#include "scrollprogram.h"
#include "snapworkbench.h"

#include <QDir>
#include <QTest>

#include <algorithm>

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
constexpr int s_headerInset = 6;     // borders and shadows of a header
constexpr int s_headerWidth = 150;   // with its title
constexpr QRgb s_late = 0xffc9c7cb;  // where a picture of the page has not come

// "toolkit kind windowmanager top|midst option...": the options are those of the programs, and
// "told" where the area is asked for through the accessibility interface.
struct Case {
    explicit Case(const QString &line)
        : options(line.split(u' ')), toolkit(options.takeFirst()), kind(options.takeFirst()),
          windowManager(options.takeFirst()), fromTop(options.takeFirst() == u"top"),
          isTold(options.removeAll(u"told"_s) > 0)
    {
    }

    QStringList options;
    QString toolkit;
    QString kind;
    QString windowManager;
    bool fromTop;
    bool isTold;
};

const QStringList s_cases{
    u"gtk list xfwm4 midst rows=300 bar status"_s,
    u"gtk editor xfwm4 top"_s,
    u"gtk editor openbox midst told"_s,
    u"gtk icons openbox midst rows=400"_s,
    u"gtk zebra xfwm4 top"_s,
    u"gtk web xfwm4 midst rows=60 smooth"_s,
    u"qt table openbox midst gap"_s,
    u"qt wide openbox midst rows=1440 frozen"_s,
    u"qt wide openbox top rows=1440 frozen told"_s,
};

}  // namespace

class TestCorpus : public QObject
{
    Q_OBJECT

private slots:
    void takesAll_data();
    void takesAll();

private:
    bool startDesktop(const Case &one);
    bool startProgram(const Case &one);
    bool isOutlined();
    QList<CodedRow> codesInSight() { return codesIn(m_desktop->screenshot().copy(m_view)); }
    /// Waits until the view shows rows, and the same twice.
    bool waitForRest();
    bool isPutBack(const Case &one, const QImage &before);
    /// What is wrong with a picture; `before` is what the view showed. A scroll bar that lies over
    /// the view is `overlay` wide, and may be left out.
    QStringList faults(const QImage &picture, const QImage &before, int count, int overlay);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    ScrollProgram m_other{};
    QRect m_view{};     ///< the other program's, on the screen
    int m_columns = 0;  ///< of what is wider than its view
    bool m_isAcross = false;
};

bool TestCorpus::startDesktop(const Case &one)
{
    m_program.reset();
    TestDesktop::Options options{.size = {2400, 900}};
    if (one.windowManager == u"openbox")
        options.windowManager = {one.windowManager};
    m_desktop = std::make_unique<TestDesktop>(options);
    if (!m_desktop->isReady())
        return false;
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings({{u"RunMinimized"_s, u"1"_s}});
    return m_program->startAndWait();
}

bool TestCorpus::startProgram(const Case &one)
{
    m_other = ScrollProgram::start(*m_desktop, one.toolkit, QStringList{one.kind} + one.options,
                                   one.isTold);
    if (!m_other.process || !waitFor([&] { return m_desktop->activeTitle() == u"scroll"; }))
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
        return (window().area.topLeft() - s_otherPlace).manhattanLength() < 100;
    };
    if (!waitFor(isPlaced))
        return false;
    m_view = m_other.view.translated(window().area.topLeft());
    return waitForRest();
}

bool TestCorpus::waitForRest()
{
    QImage last;
    return waitFor([&] {
        const QImage now = m_desktop->screenshot().copy(m_view);
        const bool isAtRest = now == last && !codesIn(now).isEmpty();
        last = now;
        if (!isAtRest)
            QTest::qWait(100);
        return isAtRest;
    });
}

bool TestCorpus::isOutlined()
{
    constexpr QRgb outline = qRgb(61, 165, 244);
    const QRect around = m_view.adjusted(-s_edge, 0, s_edge, 0);
    const QImage row =
        m_desktop->screenshot().copy(around.x(), around.center().y(), around.width(), 1);
    return row.pixel(s_edge, 0) == outline || row.pixel(around.width() - s_edge - 1, 0) == outline;
}

// The main window comes in front of it, and is put aside.
bool TestCorpus::isPutBack(const Case &one, const QImage &before)
{
    // A bar that lies over the view's end hides a part of what stands there.
    const QRect free(QPoint(), m_view.size() - QSize(0, s_overlayBar));
    const QList<CodedRow> wanted = codesIn(before.copy(free));
    m_desktop->placeWindow(m_program->mainWindow(), s_mainPlace);
    // One toolkit scrolls by parts of a row and rounds them as it lays its rows out: the same
    // clicks don't always lead to the same pixel.
    const int rounding = one.kind == u"zebra" ? s_rounding : 0;
    const auto isBack = [&] {
        const QList<CodedRow> after = codesIn(m_desktop->screenshot().copy(m_view).copy(free));
        const auto found = std::find_if(after.begin(), after.end(), [&](const CodedRow &row) {
            return row.number == wanted[1].number;
        });
        return rounding == 0
                   ? after == wanted
                   : found != after.end() && std::abs(found->at.y() - wanted[1].at.y()) <= rounding;
    };
    return waitFor([&] { return !m_program->mainWindow().area.intersects(m_view); }) &&
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
    const int columns = m_columns > 0 ? m_columns : std::max(1, line(codesIn(before)));
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
    if (m_other.header > 0) {
        const QRect strip(2, s_headerInset, s_headerWidth, m_other.header - 2 * s_headerInset);
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
    for (const QString &line : s_cases)
        QTest::newRow(qPrintable(line)) << line;
}

void TestCorpus::takesAll()
{
    QFETCH(QString, line);
    const Case one(line);
    const QStringList told = one.options.filter(u"rows="_s);
    const int rows = told.isEmpty() ? s_rows : told.first().section(u'=', 1).toInt();
    m_isAcross = one.kind == u"wide";
    m_columns = m_isAcross ? s_columns : 0;
    QVERIFY(startDesktop(one));
    QVERIFY(startProgram(one));
    m_desktop->movePointer(m_view.center());
    const QList<CodedRow> atTop = codesInSight();
    for (int i = 0; i < s_clicksDown && !one.fromTop; ++i) {
        m_desktop->press(5);
        m_desktop->release(5);
    }
    QVERIFY(one.fromTop || waitFor([&] { return codesInSight() != atTop; }));
    QVERIFY(waitForRest());
    const QImage before = m_desktop->screenshot().copy(m_view);
    QVERIFY(openPick(*m_desktop, *m_program, one.isTold));
    QVERIFY(!one.isTold || waitFor([&] { return isOutlined(); }));
    m_desktop->key(XK_Return, m_isAcross ? QList<xcb_keysym_t>{XK_Shift_L} : QList<xcb_keysym_t>{});
    QVERIFY(m_program->waitForState(u"Scrolling"_s));
    QVERIFY(m_program->waitForState(u"Idle"_s, s_captureLimit));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"untitled"); }));
    const QString name = QString(line).replace(u' ', u'-') + u".png"_s;
    const QImage picture = m_program->saveAs(m_desktop->home() + u'/' + name);
    QVERIFY(!picture.isNull());
    if (qEnvironmentVariableIsSet("SNAP_PICTURES"))
        picture.save(QDir(qEnvironmentVariable("SNAP_PICTURES")).filePath(name));
    m_desktop->key(XK_w, {XK_Control_L});
    QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));
    const bool isBack = isPutBack(one, before);
    const bool isOverlaid = one.toolkit == u"gtk" && !one.options.contains(u"bar");
    QStringList wrong = faults(picture, before, rows, isOverlaid ? s_overlayBar : 0);
    if (m_other.process->state() != QProcess::Running)
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
