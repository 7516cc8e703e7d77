#pragma once

#include "config/applicationrecord.h"
#include "config/xmlstore.h"
#include "fakedesktop.h"
#include "shell/mainwindow.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// Waits until workers have done what was begun for the open pictures.
inline void awaitJobs(const MainWindow &window)
{
    const auto *jobs = window.findChild<PictureJobs *>();
    QTRY_VERIFY(
        !jobs->find(PictureJobs::Kind::Read, 0) && !jobs->find(PictureJobs::Kind::Fetch, 0) &&
        !jobs->find(PictureJobs::Kind::Write, 0) && !jobs->find(PictureJobs::Kind::Pack, 0));
}

/// A main window, not shown, on a fake desktop, with a resource file of its own that is empty.
struct ShellFixture {
    ShellFixture()
    {
        g_ResourceFileName = folder.filePath(QStringLiteral("SnapWorkbench.xml"));
        QFile file(g_ResourceFileName);
        if (file.open(QIODevice::WriteOnly))
            file.write("<Galeway ver=\"1\"/>");
        file.close();
        g_mapNameIndex.clear();
        start();
    }
    ~ShellFixture()
    {
        end();
        FreeAllXmlDocument();
    }
    ShellFixture(const ShellFixture &) = delete;
    ShellFixture &operator=(const ShellFixture &) = delete;

    void start()
    {
        window = std::make_unique<MainWindow>();
        g_MainWindow = window.get();
    }
    /// Settings are written.
    void end()
    {
        g_MainWindow = nullptr;
        window.reset();
    }

    FakeDesktop desktop{};
    QTemporaryDir folder{};
    std::unique_ptr<MainWindow> window{};
};
