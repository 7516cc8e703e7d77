// What can still be used, on machines and in control groups of both kinds.

#include "base/memory.h"
#include "rows.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class TestMemory : public QObject
{
    Q_OBJECT

private slots:
    void available()
    {
        using Files = QMap<QString, QByteArray>;
        const auto check = [&](const QByteArray &row, const Files &files, qint64 available) {
            const QTemporaryDir root;
            for (auto file = files.cbegin(); file != files.cend(); ++file) {
                const QString path = root.path() + file.key();
                QVERIFY2(QDir().mkpath(path.section(u'/', 0, -2)), row);
                QFile written(path);
                QVERIFY(written.open(QIODevice::WriteOnly) &&
                        written.write(file.value()) == file.value().size());
            }
            expect(row, availableMemory(root.path()), available);
        };
        const Files machine{{u"/proc/meminfo"_s, "MemTotal:  9000 kB\nMemAvailable:    5000 kB\n"}};
        const auto with = [&](Files files) {
            files.insert(machine);
            return files;
        };
        check("no group", machine, qint64{5000} * 1024);
        check(
            "the group around leaves less, what files fill counted as free",
            with({{u"/proc/self/cgroup"_s, "0::/user.slice/a:b.scope\n"},
                  {u"/sys/fs/cgroup/user.slice/a:b.scope/memory.max"_s, "max\n"},
                  {u"/sys/fs/cgroup/user.slice/a:b.scope/memory.current"_s, "1000\n"},
                  {u"/sys/fs/cgroup/user.slice/memory.max"_s, "4000000\n"},
                  {u"/sys/fs/cgroup/user.slice/memory.current"_s, "3000000\n"},
                  {u"/sys/fs/cgroup/user.slice/memory.stat"_s, "anon 7\ninactive_file 500000\n"}}),
            qint64{1'500'000});
        check("a namespace's own top",
              with({{u"/proc/self/cgroup"_s, "0::/\n"},
                    {u"/sys/fs/cgroup/memory.max"_s, "300\n"},
                    {u"/sys/fs/cgroup/memory.current"_s, "400\n"}}),
              qint64{0});
        check(
            "a tree for memory alone",
            with({{u"/proc/self/cgroup"_s, "3:cpu:/x\n2:memory,hugetlb:/box\n1:name=systemd:/y\n"},
                  {u"/sys/fs/cgroup/memory/box/memory.limit_in_bytes"_s, "3000000\n"},
                  {u"/sys/fs/cgroup/memory/box/memory.usage_in_bytes"_s, "1000000\n"},
                  {u"/sys/fs/cgroup/memory/memory.limit_in_bytes"_s, "9223372036854771712\n"},
                  {u"/sys/fs/cgroup/memory/memory.usage_in_bytes"_s, "7000000\n"}}),
            qint64{2'000'000});
    }
};

QTEST_GUILESS_MAIN(TestMemory)
#include "test_memory.moc"
