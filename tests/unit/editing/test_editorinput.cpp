#include "editing/picturedocument.h"
#include "editing/pictureeditor.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QWidget>

#include <malloc.h>

#include <cstdlib>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

QList<long> g_changes;

long remember(long code, long /*unused*/)
{
    g_changes.append(code);
    return 0;
}

QList<int> types(const EditHistory &history)
{
    QList<int> result;
    for (const EntryPtr &entry : history)
        result.append(entry->style.type);
    return result;
}

}  // namespace

/// What the mouse and the keyboard do to an editor over a widget of 200 x 150, with a picture of
/// 100 x 50 in its middle.
class TestEditorInput : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_widget = std::make_unique<QWidget>();
        m_widget->resize(200, 150);
        m_editor = std::make_unique<TPictureEditor>(m_widget.get(), nullptr);
        QPixmap picture(100, 50);
        picture.fill(Qt::white);
        m_editor->setPixmap(picture);
        m_editor->setcallback(remember);
        m_widget->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_widget.get()));
        g_changes.clear();
    }

    void cleanup()
    {
        m_editor.reset();
        m_widget.reset();
    }

    void drawing()
    {
        m_editor->setState(stateRect);
        m_editor->setLineWidth(7);
        m_editor->setPenColor(Qt::green);
        drag({60, 60}, {90, 80});
        QCOMPARE(g_changes, QList<long>{TPictureEditor::HistoryChange});
        const EditEntry &entry = *m_editor->getVecUnDo().constFirst();
        QCOMPARE(std::get<RectShape>(entry.geometry).outline.boundingRect(),
                 QRect(QPoint(10, 10), QPoint(40, 30)));
        QCOMPARE(entry.style.width, 7);
        QCOMPARE(entry.style.color, QColor(Qt::green));
        // What is drawn keeps its look.
        m_editor->setLineWidth(2);
        m_editor->setPenColor(Qt::blue);
        QCOMPARE(m_editor->sendPixmap(Qt::transparent).toImage().pixelColor(20, 10),
                 QColor(Qt::green));
    }

    void presses_data()
    {
        QTest::addColumn<std::function<void()>>("mouse");
        QTest::addColumn<QList<QRect>>("rectangles");
        QTest::addColumn<int>("refusals");
        const auto row = [](const char *name, const QList<QRect> &rectangles, int refusals,
                            const std::function<void()> &mouse) {
            QTest::newRow(name) << mouse << rectangles << refusals;
        };
        const auto again = [this](QPoint at) {
            send(QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
        };
        const auto dragAcross = [this](const std::function<void()> &meanwhile) {
            press({60, 60});
            moveTo({70, 70});
            meanwhile();
            moveTo({100, 75});
            release({100, 75});
        };
        row("double click", {}, 0, [=, this] {
            click({60, 60});
            again({60, 60});
            release({60, 60});
        });
        row("click and drag", {{QPoint(12, 11), QPoint(40, 30)}}, 0, [=, this] {
            click({60, 60});
            again({62, 61});
            moveTo({90, 80});
            release({90, 80});
        });
        row("Escape", {}, 0, [=, this] {
            for (int i = 0; i < 2; ++i)
                dragAcross([this] { QVERIFY(pressEscape()); });
        });
        row("another picture", {}, 0,
            [=, this] { dragAcross([this] { m_editor->setPixmap(m_editor->getPixmap()); }); });
        row("released elsewhere", {}, 0, [=, this] {
            dragAcross([this] {
                QEnterEvent enter({70, 70}, {70, 70}, {70, 70});
                QCoreApplication::sendEvent(m_widget.get(), &enter);
            });
        });
        row("another button", {{QPoint(10, 10), QPoint(50, 25)}}, 0, [=, this] {
            dragAcross([this] {
                const Qt::MouseButtons both = Qt::LeftButton | Qt::RightButton;
                send(QEvent::MouseButtonPress, {70, 70}, Qt::RightButton, both);
                send(QEvent::MouseMove, {80, 75}, Qt::NoButton, both);
                send(QEvent::MouseButtonRelease, {80, 75}, Qt::RightButton, Qt::LeftButton);
            });
        });
        row("zoom", {{QPoint(10, 10), QPoint(50, 25)}}, 0,
            [=, this] { dragAcross([this] { m_editor->setPixmapScaled(2); }); });
        row("beside the picture", {}, 1, [this] { drag({10, 10}, {40, 140}); });
        row("around the picture", {}, 1, [this] { drag({45, 45}, {155, 105}); });
        row("a wide line reaches in", {{QPoint(-5, -5), QPoint(105, 55)}}, 0, [this] {
            m_editor->setLineWidth(12);
            drag({45, 45}, {155, 105});
        });
        row("corners outside", {{QPoint(-10, 10), QPoint(110, 20)}}, 0, [this] {
            drag({40, 60}, {160, 70});
        });
    }

    // Each press makes one shape at the most, from where it was pressed, in the picture for which
    // it was meant.
    void presses()
    {
        QFETCH(const std::function<void()>, mouse);
        m_editor->setState(stateRect);
        mouse();
        QList<QRect> rectangles;
        for (const EntryPtr &entry : m_editor->getVecUnDo())
            rectangles.append(std::get<RectShape>(entry->geometry).outline.boundingRect());
        QTEST(rectangles, "rectangles");
        QTEST(static_cast<int>(g_changes.count(TPictureEditor::Refusal)), "refusals");
    }

    void handTool()
    {
        QCOMPARE(m_editor->getState(), stateMove);
        m_editor->setState(stateMove);
        QCOMPARE(m_widget->cursor().shape(), Qt::OpenHandCursor);
        const QSignalSpy moves(m_editor.get(), &TPictureEditor::movealue);
        press({50, 50});
        QCOMPARE(m_widget->cursor().shape(), Qt::ClosedHandCursor);
        // The picture moves under the pointer: each move counts from the press.
        moveTo({53, 48});
        moveTo({54, 47});
        release({54, 47});
        QCOMPARE(m_widget->cursor().shape(), Qt::OpenHandCursor);
        QCOMPARE(moves.at(0), (QVariantList{3, -2}));
        QCOMPARE(moves.at(1), (QVariantList{4, -3}));
        QVERIFY(g_changes.isEmpty());
        m_editor->setState(stateArrow);
        QCOMPARE(m_widget->cursor().shape(), Qt::CrossCursor);
    }

    void rightClick_data()
    {
        QTest::addColumn<int>("tool");
        for (int tool = stateMove; tool <= statePoly; ++tool)
            QTest::addRow("tool %d", tool) << tool;
    }

    // The way out of any tool leaves a record that draws nothing.
    void rightClick()
    {
        QFETCH(const int, tool);
        m_editor->setState(static_cast<stateEnum>(tool));
        const QImage before = m_editor->sendPixmap(Qt::transparent).toImage();
        press({60, 60}, Qt::RightButton);
        QCOMPARE(m_editor->getState(), stateMove);
        QCOMPARE(m_widget->cursor().shape(), Qt::ClosedHandCursor);
        QCOMPARE(g_changes,
                 (QList<long>{TPictureEditor::HistoryChange, TPictureEditor::ToolChange}));
        release({90, 90}, Qt::RightButton);
        QCOMPARE(types(m_editor->getVecUnDo()), QList<int>{tool});
        QCOMPARE(m_editor->sendPixmap(Qt::transparent).toImage(), before);
        m_editor->Undo();
        QVERIFY(m_editor->getVecUnDo().isEmpty());
    }

    void textByClicks()
    {
        m_editor->setState(stateText);
        click({45, 60});
        QVERIFY(!field()->isVisible());
        QCOMPARE(g_changes, QList<long>{TPictureEditor::Refusal});
        click({60, 60});
        QVERIFY(field()->isVisible());
        QCOMPARE(field()->pos(), QPoint(55, 55));
        QVERIFY(field()->overwriteMode());
        QTest::keyClicks(field(), u"abc"_s);
        // The field keeps clicks to itself; a right one inside it is its own menu's.
        click({65, 65}, Qt::RightButton);
        QCOMPARE(m_editor->getState(), stateText);
        click({150, 100});
        QVERIFY(!field()->isVisible());
        const EditEntry &entry = *m_editor->getVecUnDo().constFirst();
        QCOMPARE(entry.style.text, u"abc"_s);
        QCOMPARE(std::get<TextShape>(entry.geometry).position, QPoint(10, 10));
        click({100, 80});
        QVERIFY(field()->isVisible());
        QVERIFY(field()->toPlainText().isEmpty());
        QCOMPARE(m_editor->getVecUnDo().size(), 1);

        // Only a click closes what a click opened: after another way the next one records an empty
        // text, and the one after that opens the field.
        m_editor->EndEdit();
        click({60, 60});
        QVERIFY(!field()->isVisible());
        QCOMPARE(m_editor->getVecUnDo().size(), 3);
        click({60, 60});
        QVERIFY(field()->isVisible());
        QCOMPARE(m_editor->getVecUnDo().size(), 3);
    }

    void textCommitted_data()
    {
        QTest::addColumn<std::function<void()>>("way");
        const auto row = [](const char *name, const std::function<void()> &way) {
            QTest::newRow(name) << way;
        };
        row("tool", [this] { m_editor->setState(stateRect); });
        row("the same tool", [this] { m_editor->setState(stateText); });
        row("EndEdit, twice", [this] { m_editor->EndEdit(), m_editor->EndEdit(); });
        row("on a hidden page", [this] { m_widget->hide(), m_editor->EndEdit(); });
        row("right click", [this] { click({190, 140}, Qt::RightButton); });
        row("redo", [this] { m_editor->Redo(); });
        row("undo, which takes it back at once", [this] {
            m_editor->Undo();
            QVERIFY(m_editor->getVecUnDo().isEmpty());
            m_editor->Redo();
        });
    }

    // No way out of the field loses what was typed.
    void textCommitted()
    {
        QFETCH(const std::function<void()>, way);
        m_editor->setState(stateText);
        click({60, 60});
        QTest::keyClicks(field(), u"kept"_s);
        way();
        QVERIFY(!field()->isVisible());
        QCOMPARE(m_editor->getVecUnDo().size(), 1);
        QCOMPARE(m_editor->getVecUnDo().constFirst()->style.text, u"kept"_s);
    }

    void fieldFits()
    {
        QFont font(u"Sans Serif"_s, 12);
        m_editor->set_m_Font(font);
        m_editor->setState(stateText);
        m_editor->setPixmapScaled(2);
        click({60, 60});
        const auto lineSize = [](int points) {
            return QFontMetrics(QFont(u"Sans Serif"_s, points))
                .boundingRect(QRect(-1000, -1000, 10, 10), Qt::AlignLeft | Qt::AlignTop, u"a"_s)
                .size();
        };
        QCOMPARE(field()->size(), lineSize(24) + QSize(50, 20));
        QTest::keyClicks(field(), u"a"_s);
        QCOMPARE(field()->size(), lineSize(24) + QSize(50, 20));
        QTest::keyClick(field(), Qt::Key_Return);
        QVERIFY(field()->height() > lineSize(24).height() * 2);
        QTest::keyClick(field(), Qt::Key_Backspace);
        // Changed in place, the font shows at the next paint.
        m_editor->EditFont().setPointSize(6);
        field()->update();
        QTRY_COMPARE(field()->size(), lineSize(12) + QSize(50, 20));
        // Nothing is left of the font: the field keeps the font's own size.
        m_editor->setPixmapScaled(0.1F);
        QCOMPARE(field()->size(), lineSize(6) + QSize(50, 20));
        // It goes with its place in the picture.
        QCOMPARE(field()->pos(), QPoint(98, 74) - QPoint(5, 5));
        m_editor->setPenColor(Qt::magenta);
        QCOMPARE(field()->palette().color(QPalette::Text), QColor(Qt::magenta));
        m_editor->EndEdit();
        QCOMPARE(m_editor->getVecUnDo().constFirst()->style.font.pointSize(), 6);
        QCOMPARE(m_editor->getVecUnDo().constFirst()->style.color, QColor(Qt::magenta));
    }

    void textStaysThere_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("left to right") << u"fjord"_s;
        QTest::newRow("right to left") << u"שלום"_s;
        QTest::newRow("lines of both") << u"שלום עולם\nab\nש"_s;
        QTest::newRow("lines of both, the other way") << u"ab\nשלום"_s;
        QTest::newRow("tabs") << u"a\t\t\tb"_s;
    }

    // The field shows a text where the picture will have it, and all of it.
    void textStaysThere()
    {
        QFETCH(const QString, text);
        QPixmap picture(200, 150);
        picture.fill(Qt::white);
        m_editor->setPixmap(picture);
        m_editor->setPenColor(Qt::red);
        m_editor->set_m_Font(QFont(u"Sans Serif"_s, 12));
        m_editor->setState(stateText);
        click({60, 40});
        field()->setCursorWidth(0);
        field()->setPlainText(text);
        QVERIFY(field()->document()->idealWidth() <= field()->viewport()->width());
        const auto ink = [](const QImage &image) {
            QRect result;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    if (const QColor color = image.pixelColor(x, y);
                        color.red() > color.green() + 99)
                        result |= QRect(x, y, 1, 1);
                }
            }
            return result;
        };
        const QRect typed = ink(m_widget->grab().toImage());
        m_editor->EndEdit();
        const QRect recorded = ink(m_editor->sendPixmap(Qt::transparent).toImage());
        QVERIFY(typed.width() > 5);
        // A field spaces its letters a little differently.
        const auto near = [](int a, int b) { return std::abs(a - b) <= 6; };
        QVERIFY(near(typed.left(), recorded.left()) && near(typed.right(), recorded.right()));
        QVERIFY(near(typed.top(), recorded.top()) && near(typed.bottom(), recorded.bottom()));
    }

    void escapeOnce()
    {
        // A drag that is dropped does not count.
        m_editor->setState(stateRect);
        press({60, 60});
        QVERIFY(pressEscape());
        release({60, 60});
        m_editor->setState(stateText);
        click({60, 60});
        QTest::keyClicks(field(), u"gone"_s);
        QVERIFY(pressEscape());
        QVERIFY(field()->isVisible());
        QVERIFY(field()->toPlainText().isEmpty());
        QTest::keyClick(field(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!pressEscape());
        QCOMPARE(field()->toPlainText(), u"gone"_s);
    }

    // What was undone comes back on top of what was drawn since.
    void redoAfterNewShape()
    {
        m_editor->setState(stateRect);
        for (int i = 0; i < 5; ++i)
            drag({60 + i, 60}, {90, 80});
        const EditHistory rectangles = m_editor->getVecUnDo();
        m_editor->Undo();
        m_editor->Undo();
        m_editor->setState(stateArrow);
        drag({60, 60}, {90, 90});
        m_editor->Redo();
        m_editor->Redo();
        QCOMPARE(types(m_editor->getVecUnDo()),
                 (QList<int>{stateRect, stateRect, stateArrow, stateRect, stateRect, stateRect}));
        QCOMPARE(m_editor->getVecUnDo().at(0), rectangles.at(0));
        QCOMPARE(m_editor->getVecUnDo().at(1), rectangles.at(1));
    }

    void hugePictures_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("one pixel") << QSize(1, 1);
        QTest::newRow("wide") << QSize(30000, 200);
        QTest::newRow("tall") << QSize(200, 30000);
    }

    // At both limits of the zoom, where the tall one would be more than a gigapixel.
    void hugePictures()
    {
        QFETCH(const QSize, size);
        QPixmap picture(size);
        picture.fill(Qt::white);
        m_editor->setPixmap(picture);
        m_editor->setState(stateEllipse);
        const auto width = static_cast<float>(size.width());
        for (const float scale : {50 / width, 1.0F, 3000 / width}) {
            m_editor->setPixmapScaled(scale);
            QCoreApplication::processEvents();
            drag({30, 20}, {170, 130});
            QCoreApplication::processEvents();
            m_editor->Undo();
            m_editor->Redo();
            m_widget->repaint();
        }
        QCOMPARE(m_editor->sendPixmap(Qt::transparent).size(), size);
    }

    void nullPicture()
    {
        m_editor->setPixmap({});
        for (int tool = stateMove; tool <= statePoly; ++tool) {
            m_editor->setState(static_cast<stateEnum>(tool));
            drag({60, 60}, {90, 80});
            click({60, 60}, Qt::RightButton);
            QVERIFY(m_editor->getVecUnDo().isEmpty());
            m_editor->setPixmapScaled(1.4F);
            m_widget->repaint();
        }
        m_editor->Undo();
        m_editor->Redo();
        QVERIFY(m_editor->sendPixmap(Qt::transparent).isNull());
    }

    void longTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("one line") << u"long "_s.repeated(2000);
        QTest::newRow("lines") << u"long\n"_s.repeated(2000);
        QTest::newRow("right to left") << u"שלום عالم "_s.repeated(1000);
        QTest::newRow("ideographs and more")
            << u"漢字かな🙂 e\u0301\u200d\n"_s.repeated(1000);
    }

    void longTexts()
    {
        QFETCH(const QString, text);
        m_editor->setState(stateText);
        click({60, 60});
        field()->setPlainText(text);
        m_widget->repaint();
        m_editor->setState(stateMove);
        m_widget->repaint();
        QCOMPARE(m_editor->getVecUnDo().constFirst()->style.text, text);
        QVERIFY(m_editor->sendPixmap(Qt::transparent).toImage() != m_editor->getPixmap().toImage());
    }

    // Closed documents give back their shapes, whoever else has looked at them meanwhile.
    void nothingIsLeft()
    {
        m_editor->setState(stateRect);
        [[maybe_unused]] const auto resident = [] {
            malloc_trim(0);
            QFile file(u"/proc/self/statm"_s);
            return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').at(1).toLongLong()
                                                  : 0;
        };
        const auto openAndClose = [this](int documents) {
            std::weak_ptr<const EditEntry> last;
            for (int i = 0; i < documents; ++i) {
                QPixmap picture(100, 50);
                picture.fill(QColor::fromRgb(i));
                QPictureDocument document(picture);
                m_editor->setPixmap(picture);
                m_editor->setVecUnDo(&document.m_VecUnDo);
                for (int shape = 0; shape < 100; ++shape)
                    drag({60, 60}, {61 + shape, 80});
                m_widget->repaint();
                document.m_VecUnDo = m_editor->getVecUnDo();
                document.GetUnitePixmap();
                last = document.m_VecUnDo.constFirst();
            }
            m_editor->clearShape();
            return last;
        };
        QVERIFY(openAndClose(100).expired());
#ifndef __SANITIZE_ADDRESS__  // which keeps what was freed, and finds by itself what was not
        const qint64 before = resident();
        QVERIFY(openAndClose(1000).expired());
        // Pages; a hundred thousand shapes would be thousands.
        QVERIFY2(resident() - before < 500, qPrintable(QString::number(resident() - before)));
#endif
    }

private:
    QTextEdit *field() const { return m_widget->findChild<QTextEdit *>(); }
    void press(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonPress, at, button, button);
    }
    void moveTo(QPoint at) { send(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton); }
    void release(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    void click(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        press(at, button);
        release(at, button);
    }
    void drag(QPoint from, QPoint to)
    {
        press(from);
        moveTo(to);
        release(to);
    }
    void send(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, at, at, button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(m_widget.get(), &event);
    }
    bool pressEscape()
    {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        return m_editor->eventFilter(m_widget.get(), &event);
    }

    std::unique_ptr<QWidget> m_widget;
    std::unique_ptr<TPictureEditor> m_editor;
};

QTEST_MAIN(TestEditorInput)
#include "test_editorinput.moc"
