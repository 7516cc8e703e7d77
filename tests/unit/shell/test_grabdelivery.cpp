// Where the picture of a grab goes, what the user hears of it, and that none is lost on the way.

#include "capture/grab.h"
#include "recognition/page.h"
#include "rows.h"
#include "shell/grabflow.h"
#include "shell/preferences.h"
#include "shell/workbench.h"
#include "shellfixture.h"

using namespace Qt::StringLiterals;

class TestGrabDelivery : public ShellTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        QGuiApplication::clipboard()->setText(u"before"_s);
        Preferences::setPictureFolder(at(u"pictures"_s));
        Preferences::setPictureName(u"{title}"_s);
    }
    void cleanup() { finish(); }

    void toTheClipboard()
    {
        take(GrabGoal::Copy);
        QCOMPARE(copied(), m_picture);
        QVERIFY(told().contains(u"clipboard"_s));
        QVERIFY(!hasTabs() && !m_window->isVisible());
        QVERIFY(m_desktop->notifications->list.isEmpty());
    }

    // What was done is old news as soon as something else is done.
    void toldUntilTheNextStep()
    {
        const auto isTold = [this](const char *row, bool isIt) {
            expect(row, told().contains(u"clipboard"_s), isIt);
        };
        take(GrabGoal::Copy);
        isTold("a grab", true);
        take(GrabGoal::Tab);
        isTold("a new tab", false);
        take(GrabGoal::Tab);
        m_window->CopyFile();
        isTold("the tab's picture", true);
        tabs()->setCurrentIndex(0);
        isTold("another tab", false);
        m_window->CopyFile();
        Preferences::setAfterGrabOf(6, GrabGoals(GrabGoal::Save) | GrabGoal::Notify);
        m_desktop->screens->list = {{0, 0, 40, 30}};
        HotkeyCallBack(6, 0);
        isTold("the next grab", false);
        awaitJobs();
    }

    // What lies there already stays, whatever it is.
    void toAFile()
    {
        QVERIFY(QDir().mkpath(at(u"pictures/Inbox (2).png"_s)));
        take(GrabGoal::Save);
        QVERIFY2(told().contains(at(u"pictures/Inbox.png"_s)), qPrintable(told()));
        const QByteArray first = contentOf(at(u"pictures/Inbox.png"_s));
        QCOMPARE(QImage::fromData(first), m_picture);
        take(GrabGoal::Save);
        QVERIFY2(told().contains(u"Inbox (3).png"_s), qPrintable(told()));
        QCOMPARE(contentOf(at(u"pictures/Inbox.png"_s)), first);
        QVERIFY(!hasTabs() && !m_window->isVisible());

        Preferences::setPictureFormat(u"jpg"_s);
        const auto sizeWith = [this](int quality) {
            Preferences::setPictureQuality(quality);
            Preferences::setPictureName(u"at %1"_s.arg(quality));
            take(GrabGoal::Save, pageOf({u"what costs most to write"_s}));
            return QFileInfo(at(u"pictures/at %1.jpg"_s.arg(quality))).size();
        };
        const qint64 small = sizeWith(5);
        QVERIFY(small > 0 && small * 2 < sizeWith(95));
    }

    // A tab whose picture was saved is that of the file; one that was drawn on has something to be
    // saved again.
    void toAFileAndATab()
    {
        take(GrabGoals(GrabGoal::Tab) | GrabGoal::Save);
        QVERIFY(m_window->isVisible());
        QVERIFY(title().startsWith(u"Inbox.png"_s));
        QVERIFY(!m_window->HasModified(true));
        take(GrabGoals(GrabGoal::Tab) | GrabGoal::Save, {}, [this] { cover(); });
        QVERIFY(title().contains(u"Inbox (2).png"_s));
        QVERIFY(m_window->HasModified(true));
    }

    void itsText()
    {
        take(GrabGoals(GrabGoal::Text) | GrabGoal::Copy, pageOf({u"beside the yellow door"_s}));
        QCOMPARE(QGuiApplication::clipboard()->text(), u"beside the yellow door"_s);
        QVERIFY(told().contains(u"yellow"_s) && !told().contains(u"picture"_s));
        QVERIFY(!hasTabs());
    }

    void nothingIsLost()
    {
        m_scratch->put(u"file"_s, "x");
        Preferences::setPictureFolder(at(u"file/pictures"_s));
        take(GrabGoals(GrabGoal::Save) | GrabGoal::Copy);
        QVERIFY2(told().contains(u"clipboard"_s) && told().contains(at(u"file/pictures"_s)) &&
                     told().contains(qt_error_string(ENOTDIR)),
                 qPrintable(told()));
        QCOMPARE(tabs()->count(), 1);
        QVERIFY(m_window->HasModified(true));

        // The picture that could not be written leaves nothing behind.
        Preferences::setPictureFolder(at(u"pictures"_s));
        Preferences::setPictureFormat(u"jpg"_s);
        take(GrabGoal::Save, solid({70'000, 1}).toImage());
        QVERIFY2(told().contains(u"could not be saved"_s), qPrintable(told()));
        QCOMPARE(tabs()->count(), 2);
        QVERIFY(QDir(at(u"pictures"_s)).isEmpty());

        take(GrabGoal::Text, solid({60, 60}).toImage());
        QCOMPARE(told(), u"No text was found."_s);
        QCOMPARE(tabs()->count(), 3);

        // Who reads something else meanwhile gives it up.
        take(GrabGoal::Text, pageOf({u"beside the yellow door"_s}), [this] {
            auto &jobs = m_window->work().jobs();
            jobs.giveUp(*jobs.find(PictureJobs::Kind::Recognize, 0));
        });
        QTRY_COMPARE(tabs()->count(), 4);
    }

    // A program that ends waits for its workers, and has what they could not save in a tab by then,
    // also while something else is still under way.
    void finishedAtTheEnd()
    {
        const GrabGoals goals = GrabGoals(GrabGoal::Save) | GrabGoal::Text;
        const QImage page = pageOf({u"beside the yellow door"_s});
        take(goals, page, [&] {
            m_window->finishPictures();
            QCOMPARE(QImage(at(u"pictures/Inbox.png"_s)).convertToFormat(page.format()), page);
            QVERIFY(!hasTabs());
        });
        m_scratch->put(u"file"_s, "x");
        Preferences::setPictureFolder(at(u"file/pictures"_s));
        take(goals, page, [&] {
            m_window->finishPictures();
            QVERIFY(hasTabs() && m_window->HasModified(true));
        });
        QCOMPARE(tabs()->count(), 1);
    }

    // Also where the user wanted another place on the way, and with what was drawn since.
    void notification()
    {
        const auto &list = m_desktop->notifications->list;
        Preferences::setAfterGrab(GrabGoals(GrabGoal::Tab) | GrabGoal::Notify);
        take(GrabGoal::Copy);
        QCOMPARE(list.size(), 1);
        QVERIFY(list.last().text.contains(u"clipboard"_s));
        QCOMPARE(list.last().picture, m_picture);
        QCOMPARE(m_desktop->notifications->offered(), (QStringList{u"Copy"_s, u"Show"_s}));
        QVERIFY(told().isEmpty());
        QGuiApplication::clipboard()->setText(u"other"_s);
        m_desktop->notifications->press(u"Copy"_s);
        QCOMPARE(copied(), m_picture);
        m_desktop->notifications->press(u"Show"_s);
        QVERIFY(m_window->isVisible());
        QCOMPARE(tabs()->count(), 1);
        m_desktop->notifications->press(u"Show"_s);
        QCOMPARE(tabs()->count(), 1);
        cover();
        m_desktop->notifications->press(u"Copy"_s);
        QCOMPARE(copied().pixelColor(2, 2), QColor(Qt::black));

        take(GrabGoal::Save);
        QVERIFY(m_desktop->notifications->offered().contains(u"Open Folder"_s));
        m_desktop->notifications->press(u"Show"_s);
        awaitJobs();
        QVERIFY(title().startsWith(u"Inbox.png"_s));

        m_desktop->notifications->areThere = false;
        take(GrabGoal::Copy);
        QVERIFY(told().contains(u"clipboard"_s));
    }

    // What a hot key has of its own goes before what holds for all.
    void ofOneHotKey()
    {
        m_desktop->screens->list = {{0, 0, 40, 30}};
        Preferences::setAfterGrabOf(6, GrabGoal::Copy);
        Preferences::setAfterGrab(GrabGoal::Save);
        HotkeyCallBack(6, 0);
        awaitJobs();
        QCOMPARE(copied().size(), QSize(40, 30));
        QVERIFY(!hasTabs() && !QFile::exists(at(u"pictures"_s)));
        Preferences::setAfterGrabOf(6, {});
        HotkeyCallBack(6, 0);
        awaitJobs();
        QCOMPARE(QDir(at(u"pictures"_s)).count(), 3U);
        // What nobody could see goes to a tab.
        Preferences::setAfterGrab(GrabGoal::Notify);
        HotkeyCallBack(6, 0);
        QVERIFY(hasTabs());
    }

private:
    // A grab of the helper's, of a window with that title; `meanwhile` runs before workers are
    // heard.
    void take(GrabGoals goals, const QImage &picture = {}, const Hook &meanwhile = {})
    {
        m_picture = picture.isNull() ? solid({30, 20}).toImage() : picture;
        m_window->grabs().helperPicks(u"Mail"_s, u"Inbox"_s);
        m_window->grabs().helperTakes(
            {.picture = QPixmap::fromImage(m_picture), .name = u"Inbox"_s, .goals = goals});
        if (meanwhile)
            meanwhile();
        awaitJobs();
        QCoreApplication::processEvents();
    }
    void cover() const
    {
        EditEntry box{RectShape{QPolygon(QRect(0, 0, 10, 10), true)},
                      {.type = stateRect, .color = Qt::black, .fill = Fill::Solid}};
        box.id = nextShapeId();
        draw({operation(AddShape{std::make_shared<const EditEntry>(box)})});
    }
    bool hasTabs() const { return !m_window->work().documents().isEmpty(); }
    static QImage copied()
    {
        return QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
    }

    QImage m_picture;
};

QTEST_MAIN(TestGrabDelivery)
#include "test_grabdelivery.moc"
