#include "editing/pictureeditor.h"
#include "rows.h"
#include "solid.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QWidget>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Hook = std::function<void()>;

QList<long> g_changes;

long remember(long code, long /*unused*/)
{
    g_changes.append(code);
    return 0;
}

QList<int> types(const EditHistory &history)
{
    QList<int> result;
    for (const OperationPtr &entry : history)
        result.append(shapeOf(*entry)->style.type);
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
        m_editor.reset();
        m_widget = std::make_unique<QWidget>();
        m_widget->resize(200, 150);
        m_editor = std::make_unique<TPictureEditor>(m_widget.get(), nullptr);
        m_editor->setPixmap(solid({100, 50}, Qt::white));
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
        const EditEntry &entry = *shapeOf(*m_editor->getVecUnDo().constFirst());
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

    // A number that was set is the next marker's, and those after it count on from there.
    void markers()
    {
        m_editor->setState(stateMarker);
        click({60, 60});
        QCOMPARE(m_editor->nextNumber(), 2);
        m_editor->setNextNumber(7);
        QCOMPARE(m_editor->nextNumber(), 7);
        click({80, 60});
        QCOMPARE(m_editor->nextNumber(), 8);
        m_editor->Undo();
        QCOMPARE(m_editor->nextNumber(), 2);
        click({100, 60});
        m_editor->Redo();
        QCOMPARE(m_editor->nextNumber(), 8);
    }

    // Each press makes one shape at the most, from where it was pressed, in the picture for which
    // it was meant.
    void presses()
    {
        const auto check = [this](const QByteArray &row, const QList<QRect> &rectangles,
                                  int refusals, const Hook &mouse) {
            init();
            m_editor->setState(stateRect);
            mouse();
            QList<QRect> made;
            for (const OperationPtr &entry : m_editor->getVecUnDo())
                made.append(std::get<RectShape>(shapeOf(*entry)->geometry).outline.boundingRect());
            expect(row, made, rectangles);
            expect(row, g_changes.count(TPictureEditor::Refusal), refusals);
        };
        const auto again = [this](QPoint at) {
            send(QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
        };
        const auto dragAcross = [this](const Hook &meanwhile) {
            press({60, 60});
            moveTo({70, 70});
            meanwhile();
            moveTo({100, 75});
            release({100, 75});
        };
        const QRect across(QPoint(10, 10), QPoint(50, 25));
        check("double click", {}, 0, [&] {
            click({60, 60});
            again({60, 60});
            release({60, 60});
        });
        check("click and drag", {{QPoint(12, 11), QPoint(40, 30)}}, 0, [&] {
            click({60, 60});
            again({62, 61});
            moveTo({90, 80});
            release({90, 80});
        });
        check("Escape", {}, 0, [&] {
            for (int i = 0; i < 2; ++i)
                dragAcross([this] { QVERIFY(pressEscape()); });
        });
        check("another picture", {}, 0,
              [&] { dragAcross([this] { m_editor->setPixmap(m_editor->getPixmap()); }); });
        check("released elsewhere", {}, 0, [&] {
            dragAcross([this] {
                QEnterEvent enter({70, 70}, {70, 70}, {70, 70});
                QCoreApplication::sendEvent(m_widget.get(), &enter);
            });
        });
        check("another button", {across}, 0, [&] {
            dragAcross([this] {
                const Qt::MouseButtons both = Qt::LeftButton | Qt::RightButton;
                send(QEvent::MouseButtonPress, {70, 70}, Qt::RightButton, both);
                send(QEvent::MouseMove, {80, 75}, Qt::NoButton, both);
                send(QEvent::MouseButtonRelease, {80, 75}, Qt::RightButton, Qt::LeftButton);
            });
        });
        check("zoom", {across}, 0, [&] { dragAcross([this] { m_editor->setPixmapScaled(2); }); });
        check("beside the picture", {}, 1, [this] { drag({10, 10}, {40, 140}); });
        check("around the picture", {}, 1, [this] { drag({45, 45}, {155, 105}); });
        check("a wide line reaches in", {{QPoint(-5, -5), QPoint(105, 55)}}, 0, [this] {
            m_editor->setLineWidth(12);
            drag({45, 45}, {155, 105});
        });
        check("corners outside", {{QPoint(-10, 10), QPoint(110, 20)}}, 0, [this] {
            drag({40, 60}, {160, 70});
        });
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

    // The way out of any tool leaves a record that draws nothing.
    void rightClick()
    {
        const QImage before = m_editor->sendPixmap(Qt::transparent).toImage();
        for (int tool = stateRect; tool <= statePoly; ++tool) {
            const QByteArray row = "tool " + QByteArray::number(tool);
            g_changes.clear();
            m_editor->setState(static_cast<stateEnum>(tool));
            press({60, 60}, Qt::RightButton);
            expect(row, m_editor->getState(), stateMove);
            expect(row, m_widget->cursor().shape(), Qt::ClosedHandCursor);
            expect(row, g_changes, {TPictureEditor::HistoryChange, TPictureEditor::ToolChange});
            release({90, 90}, Qt::RightButton);
            expect(row, types(m_editor->getVecUnDo()), {tool});
            expect(row, m_editor->sendPixmap(Qt::transparent).toImage(), before);
            m_editor->Undo();
            expect(row, m_editor->getVecUnDo().isEmpty(), true);
        }
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
        const EditEntry &entry = *shapeOf(*m_editor->getVecUnDo().constFirst());
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

    // No way out of the field loses what was typed.
    void textCommitted()
    {
        const auto check = [this](const QByteArray &row, const Hook &way) {
            init();
            m_editor->setState(stateText);
            click({60, 60});
            QTest::keyClicks(field(), u"kept"_s);
            way();
            expect(row, field()->isVisible(), false);
            expect(row, m_editor->getVecUnDo().size(), 1);
            expect(row, shapeOf(*m_editor->getVecUnDo().value(0))->style.text, u"kept"_s);
        };
        check("tool", [this] { m_editor->setState(stateRect); });
        check("the same tool", [this] { m_editor->setState(stateText); });
        check("EndEdit, twice", [this] { m_editor->EndEdit(), m_editor->EndEdit(); });
        check("on a hidden page", [this] { m_widget->hide(), m_editor->EndEdit(); });
        check("right click", [this] { click({190, 140}, Qt::RightButton); });
        check("redo", [this] { m_editor->Redo(); });
        check("undo, which takes it back at once", [this] {
            m_editor->Undo();
            QVERIFY(m_editor->getVecUnDo().isEmpty());
            m_editor->Redo();
        });
    }

    void fieldFollows()
    {
        m_editor->setState(stateText);
        click({60, 60});
        const int height = field()->height();
        m_editor->setPixmapScaled(2);
        QVERIFY(field()->height() > height);
        // Changed in place, the font shows at the next paint.
        m_editor->EditFont().setPointSize(1);
        field()->update();
        QTRY_VERIFY(field()->height() < height);
        m_editor->setPixmapScaled(0.1F);
        QCOMPARE(field()->pos(), QPoint(96, 73) - QPoint(5, 5));
        m_editor->setPenColor(Qt::magenta);
        QCOMPARE(field()->palette().color(QPalette::Text), QColor(Qt::magenta));
    }

    // The field shows a text where the picture will have it, and all of it.
    void textStaysThere()
    {
        const auto ink = [](const QImage &image) {
            QRect result;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    if (image.pixelColor(x, y).red() > image.pixelColor(x, y).green() + 99)
                        result |= QRect(x, y, 1, 1);
                }
            }
            return result;
        };
        const auto check = [&](const QByteArray &row, const QString &text) {
            init();
            m_editor->setPixmap(solid({200, 150}, Qt::white));
            m_editor->setPenColor(Qt::red);
            m_editor->set_m_Font(QFont(u"Sans Serif"_s, 12));
            m_editor->setState(stateText);
            click({60, 40});
            field()->setCursorWidth(0);
            field()->setPlainText(text);
            QVERIFY2(field()->document()->idealWidth() <= field()->viewport()->width(), row);
            const QRect typed = ink(m_widget->grab().toImage());
            m_editor->EndEdit();
            const QRect recorded = ink(m_editor->sendPixmap(Qt::transparent).toImage());
            QVERIFY2(typed.width() > 5, row);
            // A field spaces its letters a little differently.
            QVERIFY2(typed.adjusted(-6, -6, 6, 6).contains(recorded) &&
                         recorded.adjusted(-6, -6, 6, 6).contains(typed),
                     row);
        };
        check("left to right", u"fjord"_s);
        check("right to left", u"שלום"_s);
        check("lines of both", u"שלום עולם\nab\nש"_s);
        check("lines of both, the other way", u"ab\nשלום"_s);
        check("tabs", u"a\t\t\tb"_s);
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

    // At both limits of the zoom, where the tall one would be more than a gigapixel.
    void hugePictures()
    {
        m_editor->setState(stateEllipse);
        for (const QSize size : {QSize(1, 1), QSize(30000, 200), QSize(200, 30000)}) {
            m_editor->setPixmap(solid(size, Qt::white));
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
    }

    void nullPicture()
    {
        m_editor->setPixmap({});
        for (const Tool *tool : allTools()) {
            m_editor->setState(tool->state);
            drag({60, 60}, {90, 80});
            for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Space, Qt::Key_Down, Qt::Key_Return})
                QTest::keyClick(m_widget.get(), key);
            m_editor->selectAll();
            m_editor->removeSelected();
            click({60, 60}, Qt::RightButton);
            QVERIFY(m_editor->getVecUnDo().isEmpty());
            m_editor->setPixmapScaled(1.4F);
            m_widget->repaint();
        }
        m_editor->Undo();
        m_editor->Redo();
        QVERIFY(m_editor->sendPixmap(Qt::transparent).isNull());
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
