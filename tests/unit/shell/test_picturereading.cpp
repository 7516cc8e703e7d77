#include "recognition/page.h"
#include "shell/picturereading.h"
#include "shell/workbench.h"
#include "shellfixture.h"

using namespace Qt::StringLiterals;

namespace {

const QStringList s_note{u"The tide table hangs"_s, u"beside the yellow door."_s};

}  // namespace

/// What the window makes of text and codes in its picture: what is copied, told and offered.
class TestPictureReading : public ShellTest
{
    Q_OBJECT

public slots:
    void open(const QUrl &url) { m_opened.append(url); }

private slots:
    void init()
    {
        begin();
        m_opened.clear();
        QDesktopServices::setUrlHandler(u"https"_s, this, "open");
        QGuiApplication::clipboard()->setText(u"before"_s);
        m_window->show();
        activate();
    }
    void cleanup()
    {
        QDesktopServices::unsetUrlHandler(u"https"_s);
        finish();
    }

    // As the user sees the picture: what a shape covers is not read.
    void textOfAll()
    {
        show(pageOf(s_note));
        QTest::keyClick(m_window.get(), Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(copied(), s_note.join(u'\n'));
        QVERIFY2(told().contains(u"44") && told().contains(s_note.join(u' ')), qPrintable(told()));

        EditEntry bar{RectShape{QPolygon(QRect(0, s_pageMargin, 400, s_pageRow), true)},
                      {.type = stateRect, .color = Qt::black, .fill = Fill::Solid}};
        bar.id = nextShapeId();
        draw({operation(AddShape{std::make_shared<const EditEntry>(bar)})});
        QTest::keyClick(m_window.get(), Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(copied(), s_note.last());

        show(solid({60, 60}).toImage());
        QTest::keyClick(m_window.get(), Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(copied(), s_note.last());
        QCOMPARE(told(), u"No text was found."_s);
    }

    void textOfAPart()
    {
        show(pageOf(s_note));
        QTest::keyClick(m_window.get(), Qt::Key_T);
        QCOMPARE(editor()->getState(), stateReadText);
        const QSize size = editor()->pictureSize();
        const QPoint corner = view()->rect().center() - QPoint(size.width(), size.height()) / 2;
        const auto inWindow = [&](QPoint place) {
            return view()->mapTo(m_window.get(), corner + place);
        };
        QWindow *window = m_window->windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, inWindow({2, s_pageMargin + s_pageRow}));
        QTest::mouseMove(window, inWindow({90, 50}));
        QTest::mouseRelease(window, Qt::LeftButton, {}, inWindow({220, 62}));
        QCOMPARE(copied(), s_note.last());
        QVERIFY(editor()->getVecUnDo().isEmpty());
    }

    // Nothing is copied or said, and the plate goes at once.
    void givenUp()
    {
        show(pageOf(QStringList(150, s_note.join(u' '))));
        m_window->reading().copyText();
        auto *plate = m_window->findChild<QWidget *>(u"WidProgress"_s);
        m_desktop->clock->advance(1000);
        QVERIFY(plate->isVisible());
        QTest::keyClick(m_window.get(), Qt::Key_Escape);
        QVERIFY(!m_window->work().jobs().find(PictureJobs::Kind::Recognize, 0));
        m_desktop->clock->advance(1000);
        QVERIFY(!plate->isVisible());
        m_window->reading().readCodes();
        QTRY_COMPARE(told(), u"No QR or bar code was found."_s);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s);
    }

    void codes()
    {
        show(codePicture());
        m_window->reading().readCodes();
        const QString address = QLatin1StringView(s_codeText);
        QTRY_VERIFY2(told().endsWith(address), qPrintable(told()));
        QVERIFY(m_opened.isEmpty());
        takeOffer(u"&Open"_s);
        QCOMPARE(m_opened, QList<QUrl>{QUrl(address)});
        m_window->reading().readCodes();
        QTRY_VERIFY(told().endsWith(address));
        takeOffer(u"&Copy"_s);
        QCOMPARE(QGuiApplication::clipboard()->text(), address);
    }

private:
    void show(const QImage &picture) const
    {
        m_window->NewDocument(QPixmap::fromImage(picture), u"note"_s);
    }
    QString copied() const
    {
        awaitJobs();
        return QGuiApplication::clipboard()->text();
    }

    QList<QUrl> m_opened;
};

QTEST_MAIN(TestPictureReading)
#include "test_picturereading.moc"
