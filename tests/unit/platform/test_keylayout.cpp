#include "platform/x11/keylayout.h"

#include <QTest>

class TestKeyLayout : public QObject
{
    Q_OBJECT

private slots:
    void letters_data();
    void letters();
    void keys();
};

namespace {

// Places on the keyboard, by what a US one has there.
constexpr uint8_t s_r = 27;
constexpr uint8_t s_s = 39;
constexpr uint8_t s_v = 55;

const KeyLayout::Group s_us{{s_r, 'R'}, {s_s, 'S'}, {s_v, 'V'}};
const KeyLayout::Group s_moved{{s_r, 'P'}, {s_s, 'R'}, {40, 'S'}, {s_v, 'V'}};

}  // namespace

void TestKeyLayout::letters_data()
{
    QTest::addColumn<QList<KeyLayout::Group>>("groups");
    QTest::addColumn<uint8_t>("key");
    QTest::addColumn<int>("group");
    QTest::addColumn<char>("letter");
    using Groups = QList<KeyLayout::Group>;
    const Groups two{s_us, s_moved};
    QTest::newRow("first of two") << two << s_s << 0 << 'S';
    QTest::newRow("second of two") << two << s_s << 1 << 'R';
    QTest::newRow("moved away") << two << s_r << 1 << 'P';
    QTest::newRow("no such layout") << two << s_s << 2 << '\0';
    QTest::newRow("no letters: where the other layout has it")
        << Groups{{}, s_moved} << s_s << 0 << 'R';
    QTest::newRow("no letters at all: as on a US keyboard") << Groups{{}} << s_v << 0 << 'V';
    QTest::newRow("only V missing, its place taken")
        << Groups{{{s_r, 'R'}, {s_s, 'S'}, {s_v, 'K'}}} << s_v << 0 << 'K';
}

void TestKeyLayout::letters()
{
    QFETCH(QList<KeyLayout::Group>, groups);
    QFETCH(uint8_t, key);
    QFETCH(int, group);
    QTEST(KeyLayout(groups).letterOf(key, group), "letter");
}

void TestKeyLayout::keys()
{
    const KeyLayout layout({s_us, s_moved});
    QCOMPARE(layout.keysOf('R'), (QList<uint8_t>{s_r, s_s}));
    QCOMPARE(layout.keysOf('V'), QList<uint8_t>{s_v});
}

QTEST_APPLESS_MAIN(TestKeyLayout)
#include "test_keylayout.moc"
