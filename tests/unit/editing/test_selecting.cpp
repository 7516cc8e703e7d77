#include "editing/pictureeditor.h"
#include "rows.h"
#include "solid.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_picture(200, 150);

EditEntry rectangle(const QRect &rect)
{
    return {RectShape{QPolygon(rect, true)}, {.type = stateRect, .width = 2, .color = Qt::red}};
}

}  // namespace

/// What pointer and keys do to shapes that are there, to the crop frame and with the pipette, over
/// a picture that fills its widget. It has a hollow rectangle, an arrow across it and a text.
class TestSelecting : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_editor.reset();
        m_widget = std::make_unique<QWidget>();
        m_widget->resize(s_picture);
        m_editor = std::make_unique<TPictureEditor>(m_widget.get(), nullptr);
        m_editor->setPixmap(solid(s_picture, Qt::white));
        record(rectangle({QPoint(20, 20), QSize(60, 40)}));
        record({ArrowShape{CreateArrowPolygon({100, 30}, {160, 30}, 2), {100, 30}},
                {.type = stateArrow, .width = 2, .color = Qt::blue}});
        EditMsg note{.type = stateText, .color = Qt::black, .text = u"Note"_s};
        note.font.setPixelSize(20);
        record({TextShape{{30, 90}}, note});
        m_widget->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_widget.get()));
        m_editor->setState(stateSelect);
    }

    void cleanup()
    {
        m_editor.reset();
        m_widget.reset();
    }

    // Each of these is one step, which undo takes back, and leaves the place of the shape among the
    // others.
    void steps()
    {
        const auto check = [this](const QByteArray &row, const std::function<void()> &act,
                                  const QList<QRect> &boxes) {
            init();
            const auto before = boxesOf();
            const qsizetype steps = m_editor->getVecUnDo().size();
            act();
            expect(row, boxesOf(), boxes);
            expect(row, m_editor->getVecUnDo().size(), steps + 1);
            m_editor->Undo();
            expect(row, boxesOf(), before);
        };
        const QList<QRect> was = boxesOf();
        const QRect rect = was[0];
        const QRect arrow = was[1];
        const QRect text = was[2];
        const auto pick = [this] { click({50, 20}); };
        check("moved by its edge",
              [&] {
                  drag({50, 20}, {57, 31});
              },
              {rect.translated(7, 11), arrow, text});
        check("moved beyond the edge of the picture",
              [&] {
                  drag({50, 20}, {5, 0});
              },
              {rect.translated(-45, -20), arrow, text});
        check("a corner",
              [&] {
                  pick(), drag({80, 60}, {90, 80});
              },
              {QRect(20, 20, 70, 60), arrow, text});
        check("a corner with Shift",
              [&] {
                  pick(), drag({80, 60}, {110, 60}, Qt::ShiftModifier);
              },
              {QRect(20, 20, 90, 60), arrow, text});
        check("an edge, no further than the other one",
              [&] {
                  pick(), drag({20, 40}, {150, 45});
              },
              {QRect(79, 20, 1, 40), arrow, text});
        check("the end of an arrow",
              [&] {
                  click({120, 30}), drag({100, 30}, {100, 80});
              },
              {rect, arrowFrom({100, 80}), text});
        check("with Ctrl in another tool",
              [&] {
                  m_editor->setState(stateEllipse);
                  drag({50, 20}, {60, 20}, Qt::ControlModifier);
              },
              {rect.translated(10, 0), arrow, text});
        check("by keys", [&] { pick(), key(Qt::Key_Left), m_editor->Undo(), key(Qt::Key_Down); },
              {rect.translated(0, 1), arrow, text});
        check("far by keys", [&] { pick(), key(Qt::Key_Up, Qt::ShiftModifier); },
              {rect.translated(0, -10), arrow, text});
        check("two at once",
              [&] {
                  pick(), click({120, 30}, Qt::ShiftModifier), drag({120, 30}, {125, 30});
              },
              {rect.translated(5, 0), arrow.translated(5, 0), text});
        check("a band around two of them",
              [&] {
                  drag({10, 10}, {90, 130}), m_editor->removeSelected();
              },
              {arrow});
        check("all", [&] { m_editor->selectAll(), m_editor->removeSelected(); }, {});
        check("doubled", [&] { pick(), m_editor->duplicateSelected(); },
              {rect, arrow, text, rect.translated(10, 10)});
        check("raised", [&] { pick(), m_editor->raiseSelected(); }, {arrow, rect, text});
        check("lowered", [&] { click({120, 30}), m_editor->lowerSelected(); }, {arrow, rect, text});
        check("both lowered",
              [&] {
                  click({120, 30}), click({40, 100}, Qt::ShiftModifier), m_editor->lowerSelected();
              },
              {arrow, text, rect});
    }

    // Nothing is picked where nothing is drawn, moved out of the picture, or changed by a click.
    void nothing()
    {
        const EditHistory before = m_editor->getVecUnDo();
        click({50, 40});
        QVERIFY(!m_editor->hasSelection());
        click({50, 26});
        QVERIFY(!m_editor->hasSelection());
        click({50, 24});
        QVERIFY(m_editor->hasSelection());
        drag({50, 20}, {250, 20});
        drag({40, 20}, {250, 20});
        drag({40, 20}, {50, 20});
        QTest::keyClick(m_widget.get(), Qt::Key_Escape);
        QVERIFY(!m_editor->hasSelection());
        m_editor->removeSelected();
        m_editor->raiseSelected();
        QCOMPARE(m_editor->getVecUnDo().size(), before.size() + 1);
        // A drag that is given up.
        press({60, 20});
        moveTo({70, 30});
        QTest::keyClick(m_widget.get(), Qt::Key_Escape);
        release({70, 30});
        QCOMPARE(m_editor->getVecUnDo().size(), before.size() + 1);
    }

    // Of several spotlights only the lowest draws.
    void spotlights()
    {
        for (const int left : {10, 110})
            record({SpotlightShape{QRect(left, 100, 40, 30)}, {.type = stateSpotlight}});
        for (const int left : {10, 110}) {
            click({left, 110});
            QCOMPARE(boxOf(*m_editor->chosen().value(0)), QRect(left, 100, 40, 30));
        }
    }

    void tabWalks()
    {
        const auto chosen = [this] {
            return boxesOf().indexOf(boxOf(*m_editor->chosen().value(0)));
        };
        for (const int place : {0, 1, 2}) {
            key(Qt::Key_Tab);
            QCOMPARE(chosen(), place);
        }
        key(Qt::Key_Backtab);
        QCOMPARE(chosen(), 1);
        QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QVERIFY(m_editor->eventFilter(m_widget.get(), &tab));
        QVERIFY(!m_editor->eventFilter(m_widget.get(), &tab));
        QVERIFY(!m_editor->hasSelection());
    }

    // What is chosen takes a style, and the pen stays as it is. A slider that is dragged is one
    // step.
    void styles()
    {
        m_editor->selectAll();
        const qsizetype steps = m_editor->getVecUnDo().size();
        for (const int width : {3, 4, 9})
            m_editor->setLineWidth(width);
        m_editor->setPenColor(Qt::green);
        m_editor->changeStyle([](EditMsg &style) { style.fill = Fill::Solid; });
        QCOMPARE(m_editor->getVecUnDo().size(), steps + 3);
        for (const EntryPtr &shape : m_editor->chosen()) {
            QCOMPARE(shape->style.width, 9);
            QCOMPARE(shape->style.color, QColor(Qt::green));
        }
        QCOMPARE(std::get<ArrowShape>(m_editor->chosen().at(1)->geometry).points,
                 CreateArrowPolygon({100, 30}, {160, 30}, 9));
        for (int i = 0; i < 3; ++i)
            m_editor->Undo();
        QCOMPARE(m_editor->chosen().first()->style.width, 2);
        m_editor->setState(stateRect);
        QCOMPARE(m_editor->getLineWidth(), 1);
        QCOMPARE(m_editor->getPenColor(), QColor(Qt::black));
    }

    void textAgain()
    {
        const auto text = [this] {
            const EntryPtr shape = m_editor->chosen().value(0);
            return shape ? shape->style.text : u"none"_s;
        };
        const qsizetype steps = m_editor->getVecUnDo().size();
        QTest::mouseDClick(m_widget.get(), Qt::LeftButton, {}, {40, 100});
        QVERIFY(m_editor->isTyping());
        QCOMPARE(field()->toPlainText(), u"Note"_s);
        QTest::keyClicks(field(), u"d!"_s);
        QVERIFY(shapeOf(*m_editor->typedText())->style.text == u"Noted!"_s);
        click({150, 120});
        QCOMPARE(m_editor->getState(), stateSelect);
        QCOMPARE(m_editor->getVecUnDo().size(), steps + 1);
        QCOMPARE(text(), u"Noted!"_s);
        key(Qt::Key_Return);
        field()->selectAll();
        QTest::keyClick(field(), Qt::Key_Delete);
        QTest::keyClick(field(), Qt::Key_Escape);
        QCOMPARE(text(), u"Noted!"_s);
        key(Qt::Key_Return);
        field()->selectAll();
        QTest::keyClick(field(), Qt::Key_Delete);
        m_editor->setState(stateSelect);
        QCOMPARE(boxesOf().size(), 2);
        m_editor->Undo();
        QCOMPARE(boxesOf().size(), 3);
    }

    void crop()
    {
        m_editor->setState(stateRect);
        m_editor->setState(stateCrop);
        m_widget->repaint();
        drag({10, 10}, {110, 90});
        m_widget->repaint();
        key(Qt::Key_Right, Qt::ShiftModifier);
        key(Qt::Key_Return);
        QCOMPARE(m_editor->getState(), stateRect);
        QCOMPARE(m_editor->pictureSize(), QSize(101, 80));
        QCOMPARE(boxesOf().first(), QRect(10, 10, 60, 40));
        m_editor->Undo();
        QCOMPARE(m_editor->pictureSize(), s_picture);
        QCOMPARE(boxesOf().first(), QRect(20, 20, 60, 40));
        m_editor->setState(stateCrop);
        m_widget->repaint();
        // A handle, a push to the edge, and the way back.
        drag({10, 10}, {110, 90});
        drag({110, 90}, {90, 60});
        key(Qt::Key_Right, Qt::AltModifier);
        key(Qt::Key_Up, Qt::AltModifier);
        key(Qt::Key_Up);
        key(Qt::Key_Left);
        key(Qt::Key_Left);
        key(Qt::Key_Right);
        key(Qt::Key_Return);
        QCOMPARE(m_editor->pictureSize(), QSize(s_picture.width() - 10, 60));
        QCOMPARE(boxesOf().first(), QRect(11, 20, 60, 40));
        m_editor->Undo();
        m_editor->setState(stateCrop);
        m_widget->repaint();
        // The frame goes in the middle of a drag.
        press({200, 70});
        moveTo({150, 70});
        key(Qt::Key_Escape);
        moveTo({140, 70});
        release({140, 70});
        QCOMPARE(m_editor->getState(), stateRect);
        QCOMPARE(m_editor->pictureSize(), s_picture);
    }

    void pipette()
    {
        const QSignalSpy taken(m_editor.get(), &TPictureEditor::colorTaken);
        m_editor->setState(stateEllipse);
        m_editor->setState(statePipette);
        click({20, 40});
        QCOMPARE(taken.size(), 1);
        QCOMPARE(taken.first().first().value<QColor>(), QColor(Qt::red));
        QCOMPARE(m_editor->getState(), stateEllipse);
    }

    // Marks a part and draws nothing; what lies outside the picture does not count.
    void readText()
    {
        const QSignalSpy wanted(m_editor.get(), &TPictureEditor::textWanted);
        const qsizetype steps = m_editor->getVecUnDo().size();
        m_editor->setState(stateReadText);
        drag({150, 100}, {260, 180});
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(wanted.first().first().toRect(), QRect(150, 100, 50, 50));
        QCOMPARE(m_editor->getState(), stateReadText);
        drag({50, 50}, {52, 51});
        press({20, 20});
        moveTo({60, 60});
        key(Qt::Key_Escape);
        release({90, 90});
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(m_editor->getVecUnDo().size(), steps);
        key(Qt::Key_Escape);
        QCOMPARE(m_editor->getState(), stateSelect);
    }

    // A cross that the arrow keys move stands for the pointer, and the space key for its button.
    void drawnByKeys()
    {
        m_editor->setState(stateEllipse);
        const qsizetype steps = m_editor->getVecUnDo().size();
        key(Qt::Key_Left);
        key(Qt::Key_Left);
        key(Qt::Key_Space);
        key(Qt::Key_Right);
        key(Qt::Key_Right);
        key(Qt::Key_Down);
        key(Qt::Key_Space);
        QCOMPARE(m_editor->getVecUnDo().size(), steps + 1);
        QCOMPARE(boxesOf().last().size(), QSize(20, 10));
        key(Qt::Key_Space);
        key(Qt::Key_Up);
        key(Qt::Key_Escape);
        key(Qt::Key_Escape);
        QCOMPARE(m_editor->getVecUnDo().size(), steps + 1);
    }

    // In a tool that does not draw the right button opens the menu and records nothing.
    void menu()
    {
        const EditHistory before = m_editor->getVecUnDo();
        QSignalSpy wanted(m_editor.get(), &TPictureEditor::menuWanted);
        for (const stateEnum tool : {stateMove, stateSelect}) {
            m_editor->setState(tool);
            click({50, 20}, {}, Qt::RightButton);
        }
        QVERIFY(m_editor->hasSelection());
        m_editor->setState(stateArrow);
        key(Qt::Key_F10, Qt::ShiftModifier);
        key(Qt::Key_Menu);
        QCOMPARE(wanted.size(), 4);
        QCOMPARE(m_editor->getVecUnDo(), before);
    }

private:
    void record(EditEntry shape) const { m_editor->record(adding(std::move(shape))); }
    static QRect arrowFrom(QPoint start)
    {
        return ArrowShape{CreateArrowPolygon(start, {160, 30}, 2), start}.box({});
    }
    QList<QRect> boxesOf() const
    {
        QList<QRect> boxes;
        for (const EntryPtr &shape : sceneOf(m_editor->getVecUnDo(), s_picture).shapes)
            boxes.append(boxOf(*shape));
        return boxes;
    }
    QTextEdit *field() const { return m_widget->findChild<QTextEdit *>(); }
    void key(Qt::Key code, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(m_widget.get(), code, modifiers);
    }
    void press(QPoint at, Qt::KeyboardModifiers modifiers = {},
               Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonPress, at, button, button, modifiers);
    }
    void moveTo(QPoint at, Qt::KeyboardModifiers modifiers = {})
    {
        send(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton, modifiers);
        m_widget->repaint();
    }
    void release(QPoint at, Qt::KeyboardModifiers modifiers = {},
                 Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonRelease, at, button, Qt::NoButton, modifiers);
    }
    void click(QPoint at, Qt::KeyboardModifiers modifiers = {},
               Qt::MouseButton button = Qt::LeftButton)
    {
        press(at, modifiers, button);
        release(at, modifiers, button);
    }
    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {})
    {
        press(from, modifiers);
        moveTo(to, modifiers);
        release(to, modifiers);
    }
    void send(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons,
              Qt::KeyboardModifiers modifiers)
    {
        QMouseEvent event(type, at, at, button, buttons, modifiers);
        QCoreApplication::sendEvent(m_widget.get(), &event);
    }

    std::unique_ptr<QWidget> m_widget;
    std::unique_ptr<TPictureEditor> m_editor;
};

QTEST_MAIN(TestSelecting)
#include "test_selecting.moc"
