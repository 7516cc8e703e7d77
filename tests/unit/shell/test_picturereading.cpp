#include "editing/tools/tooltable.h"
#include "recognition/page.h"
#include "shell/hidetextdialog.h"
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
        takeOffer(u"Cop&y"_s);
        QCOMPARE(QGuiApplication::clipboard()->text(), address);
    }

    // Nothing is found in what is left of the page.
    void secrets()
    {
        show(pageOf(s_secrets));
        hideText([](HideTextDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
        QCOMPARE(editor()->getVecUnDo().size(), 1);
        m_window->reading().hideText();
        awaitJobs();
        QVERIFY2(told().startsWith(u"Nothing was found"), qPrintable(told()));
    }

    // What is not checked stays, and all that is hidden comes back as one step.
    void someSecrets()
    {
        show(pageOf({u"Write to anna.lindqvist@example.com"_s, s_note.first(),
                     u"Card 4111 1111 1111 1111 exp 09/29"_s}));
        hideText([](HideTextDialog &dialog) {
            auto *list = dialog.findChild<QTreeWidget *>();
            QCOMPARE(dialog.focusWidget(), list);
            QCOMPARE(list->topLevelItemCount(), 2);
            QCOMPARE(list->currentItem()->text(1), u"anna.lindqvist@example.com"_s);
            auto *hide = dialog.findChild<QDialogButtonBox *>()->findChild<QPushButton *>();
            // A click beside a box leaves the keys with the box.
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualRect(list->model()->index(1, 1)).center());
            QTest::keyClick(list, Qt::Key_Space);
            QVERIFY(hide->isEnabled());
            QTest::keyClick(list, Qt::Key_Up);
            QTest::keyClick(list, Qt::Key_Space);
            QVERIFY(!hide->isEnabled());
            QTest::keyClick(list, Qt::Key_Space);
            auto *advice = dialog.findChild<QLabel *>(u"lblAdvice"_s);
            QVERIFY(!advice->isVisible());
            QTest::keyClick(dialog.findChild<QComboBox *>(), Qt::Key_Down);
            QVERIFY(advice->isVisible());
            QTest::keyClick(list, Qt::Key_Return);
        });
        QVERIFY2(told().startsWith(u"1 "), qPrintable(told()));
        const QList<EntryPtr> covers = shapesOf(*editor()->getVecUnDo().first());
        QCOMPARE(covers.size(), 1);
        QVERIFY(!std::get<PixelateShape>(covers.first()->geometry).colors.isEmpty());
        hideText([](HideTextDialog &dialog) {
            QCOMPARE(dialog.chosen().size(), 1);
            QCOMPARE(dialog.chosen().first().kind, Secret::Kind::Card);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        QCOMPARE(editor()->getVecUnDo().size(), 1);
        editor()->Undo();
        QVERIFY(editor()->getVecUnDo().isEmpty());
    }

    void picturesThatChange_data()
    {
        QTest::addColumn<bool>("isAsked");
        QTest::addColumn<bool>("isClosed");
        QTest::newRow("changed before the question") << false << false;
        QTest::newRow("changed while asked") << true << false;
        QTest::newRow("closed while asked") << true << true;
    }

    // Places that were found in one picture are not covered in another.
    void picturesThatChange()
    {
        QFETCH(const bool, isAsked);
        QFETCH(const bool, isClosed);
        add({300, 100});
        show(pageOf({s_secrets.first()}));
        const EditHistory line{adding({RectShape{{{1, 1}, {9, 9}}}, {.type = stateRect}})};
        const auto change = [&] { isClosed ? m_window->work().drop(1) : draw(line); };
        if (isAsked) {
            hideText([&](HideTextDialog &dialog) {
                change();
                QCOMPARE(dialog.isVisible(), !isClosed);
                dialog.accept();
            });
        } else {
            m_window->reading().hideText();
            change();
            awaitJobs();
        }
        QVERIFY2(told().startsWith(u"Nothing was hidden"), qPrintable(told()));
        QVERIFY(!hasCovers(editor()->getVecUnDo()));
    }

    // Who looks at another picture meanwhile is not disturbed.
    void anotherInFront()
    {
        show(pageOf({s_secrets.first()}));
        m_window->reading().hideText();
        add();
        awaitJobs();
        QVERIFY(!QApplication::activeModalWidget());
        const QString offer = told();
        m_window->work().show(0);
        QCOMPARE(told(), offer);
        m_window->work().show(1);
        takeOffer(u"Sh&ow"_s);
        qobject_cast<QDialog *>(QApplication::activeModalWidget())->accept();
        QCOMPARE(m_window->work().documents().current(), 0);
        QVERIFY(hasCovers(editor()->getVecUnDo()));
    }

    // Nothing is offered that can't be done any more.
    void offerThatIsOver()
    {
        show(pageOf({s_secrets.first()}));
        for (const bool isClosed : {false, true}) {
            m_window->work().show(0);
            m_window->reading().hideText();
            add();
            awaitJobs();
            QVERIFY(told().startsWith(u"1 "));
            m_window->work().show(0);
            if (isClosed)
                m_window->work().drop(0);
            else
                editor()->record(adding({RectShape{{{1, 1}, {9, 9}}}, {.type = stateRect}}));
            QTRY_COMPARE(told(), QString());
        }
    }

private:
    // Until the dialog is closed.
    void hideText(const std::function<void(HideTextDialog &)> &run)
    {
        QTest::keyClick(m_window.get(), Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier);
        awaitJobs();
        auto *dialog = m_window->findChild<HideTextDialog *>();
        QVERIFY2(dialog, qPrintable(told()));
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        run(*dialog);
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
        QCoreApplication::sendPostedEvents(dialog, QEvent::DeferredDelete);
        activate();
    }
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
