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
            expect(row, KeyLayout(groups).letterOf(key, group), letter);
        };
        const Groups two{s_us, s_moved};
        check("first of two", two, s_s, 0, 'S');
        check("second of two", two, s_s, 1, 'R');
        check("moved away", two, s_r, 1, 'P');
        check("no such layout", two, s_s, 2, '\0');
        check("no letters: where the other layout has it", Groups{{}, s_moved}, s_s, 0, 'R');
        check("no letters at all: as on a US keyboard", Groups{{}}, s_v, 0, 'V');
        check("only V missing, its place taken", Groups{{{s_r, 'R'}, {s_s, 'S'}, {s_v, 'K'}}}, s_v,
              0, 'K');
    }

    void keys()
    {
        const KeyLayout layout({s_us, s_moved});
        QCOMPARE(layout.keysOf('R'), (QList<uint8_t>{s_r, s_s}));
        QCOMPARE(layout.keysOf('V'), QList<uint8_t>{s_v});
    }
};

QTEST_APPLESS_MAIN(TestKeyLayout)
#include "test_keylayout.moc"
