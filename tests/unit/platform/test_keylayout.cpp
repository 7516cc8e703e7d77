#include "platform/x11/keylayout.h"
#include "rows.h"

namespace {

// Places on the keyboard, by what a US one has there.
constexpr uint8_t s_r = 27;
constexpr uint8_t s_s = 39;
constexpr uint8_t s_v = 55;

const KeyLayout::Group s_us{{s_r, 'R'}, {s_s, 'S'}, {s_v, 'V'}};
const KeyLayout::Group s_moved{{s_r, 'P'}, {s_s, 'R'}, {40, 'S'}, {s_v, 'V'}};

}  // namespace

class TestKeyLayout : public QObject
{
    Q_OBJECT

private slots:
    void letters()
    {
        using Groups = QList<KeyLayout::Group>;
        const auto check = [&](const QByteArray &row, const QList<KeyLayout::Group> &groups,
                               uint8_t key, int group, char letter) {
            QVERIFY2(KeyLayout(groups).isKey(key, group, letter), row);
        };
        const Groups two{s_us, s_moved};
        check("first of two", two, s_s, 0, 'S');
        check("second of two", two, s_s, 1, 'R');
        check("moved away", two, s_r, 1, 'P');
        QVERIFY(!KeyLayout(two).isKey(s_s, 2, 'S'));
        check("no letters: where the other layout has it", Groups{{}, s_moved}, s_s, 0, 'R');
        check("no letters at all: as on a US keyboard", Groups{{}}, s_v, 0, 'V');
        check("letters that are none of these", Groups{{{s_r, 0x41a}}}, s_r, 0, 'R');
        check("only V missing, its place taken", Groups{{{s_r, 'R'}, {s_s, 'S'}, {s_v, 'K'}}}, s_v,
              0, 'K');
    }

    void keys()
    {
        const KeyLayout layout({s_us, s_moved});
        QCOMPARE(layout.keysOf('R'), (QList<uint8_t>{s_r, s_s}));
        QCOMPARE(layout.keysOf('V'), QList<uint8_t>{s_v});
        // One layout has it without Shift, which the other one needs.
        constexpr uint8_t three = 12;
        const KeyLayout two({{{three, '3'}}, {{three, '"'}}}, {{{three, '#'}}, {{three, '3'}}});
        QCOMPARE(two.keysOf('3'), QList<uint8_t>{three});
        QCOMPARE(two.keysOf('#'), QList<uint8_t>{three});
        QVERIFY(two.isKey(three, 0, '#') && two.isKey(three, 1, '3') && !two.isKey(three, 1, '#'));
    }
};

QTEST_APPLESS_MAIN(TestKeyLayout)
#include "test_keylayout.moc"
