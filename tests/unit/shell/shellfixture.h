#pragma once

#include "config/applicationrecord.h"
#include "config/xmlstore.h"
#include "editing/pictureeditor.h"
#include "fakedesktop.h"
#include "scratch.h"
#include "shell/mainwindow.h"
#include "shell/picturejobs.h"
#include "solid.h"

#include <QtTest>
#include <QtWidgets>

#include <functional>
#include <memory>
#include <optional>

#include <zip.h>

using Hook = std::function<void()>;

/// Makes a file with layers one of a version of the program that is still to come.
inline void makeLater(const QString &path)
{
    static const QByteArray s_data = R"({"version":1000})";
    zip_t *archive = zip_open(QFile::encodeName(path).constData(), 0, nullptr);
    zip_file_add(archive, "SnapWorkbench/state.json",
                 zip_source_buffer(archive, s_data.constData(), s_data.size(), 0),
                 ZIP_FL_OVERWRITE);
    QCOMPARE(zip_close(archive), 0);
}

/// A main window on a fake desktop, with a resource file of its own; all anew for each case.
class ShellTest : public QObject
{
protected:
    /// The window is made, and not shown.
    void begin(const QByteArray &resource = "<Galeway ver=\"1\"/>")
    {
        finish();
        m_desktop.emplace();
        m_scratch.emplace();
        g_ResourceFileName = m_scratch->put(QStringLiteral("SnapWorkbench.xml"), resource);
        g_mapNameIndex.clear();
        m_asked.clear();
        start();
    }
    void start()
    {
        m_window = std::make_unique<MainWindow>();
        g_MainWindow = m_window.get();
    }
    /// Settings are written.
    void end()
    {
        g_MainWindow = nullptr;
        m_window.reset();
    }
    void finish()
    {
        end();
        FreeAllXmlDocument();
    }

    QString at(const QString &name) const { return m_scratch->path(name); }
    QString title() const { return m_window->windowTitle(); }
    QTabWidget *tabs() const
    {
        return m_window->findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    }
    TPictureEditor *editor() const { return m_window->findChild<TPictureEditor *>(); }
    QPushButton *button(const char *name) const
    {
        return m_window->findChild<QPushButton *>(QLatin1StringView(name));
    }
    QWidget *view() const { return m_window->findChild<QWidget *>(QStringLiteral("lblPicture")); }
    QString told() const
    {
        const auto *bar = m_window->findChild<NoticeBar *>();
        return bar ? bar->text() : QString();
    }
    /// Clicks a button of what is told.
    void takeOffer(const QString &text) const
    {
        for (QPushButton *button :
             m_window->findChild<NoticeBar *>()->findChildren<QPushButton *>()) {
            if (button->text() == text && button->isVisible())
                return button->click();
        }
        QFAIL(qPrintable(text));
    }
    void add(QSize size = {20, 20}, const QString &name = {}) const
    {
        m_window->NewDocument(solid(size), name);
    }
    /// Opens files, and waits until they are read.
    void open(const QStringList &paths) const
    {
        m_window->openPictures(paths);
        awaitJobs();
    }
    /// Waits until workers have done what was begun for the open pictures.
    void awaitJobs() const
    {
        const auto *jobs = m_window->findChild<PictureJobs *>();
        using Kind = PictureJobs::Kind;
        for (const Kind kind :
             {Kind::Read, Kind::Fetch, Kind::Write, Kind::Pack, Kind::Recognize, Kind::HandOver})
            QTRY_VERIFY_WITH_TIMEOUT(!jobs->find(kind, 0), 120'000);
    }
    void draw(const EditHistory &shapes) const
    {
        editor()->setVecUnDo(&shapes);
        PictureChanged(TPictureEditor::HistoryChange, 0);
    }
    void activate() const
    {
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    /// Clicks in the native window, as by hand.
    void clickAt(const QWidget *widget, QPoint place) const
    {
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(m_window.get(), place));
    }

    /// Runs something once the next dialog of a kind is up.
    template<typename Dialog> void whenUp(const std::function<void(Dialog &)> &run)
    {
        QTimer::singleShot(1, m_window.get(), [this, run] {
            auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
            dialog ? run(*dialog) : whenUp<Dialog>(run);
        });
    }
    /// Answers the next message box, keeps its text, and lets something happen before that.
    void answer(QMessageBox::StandardButton button, const Hook &meanwhile = {})
    {
        whenUp<QMessageBox>([this, button, meanwhile](QMessageBox &box) {
            m_asked = box.text();
            if (meanwhile)
                meanwhile();
            box.button(button)->click();
        });
    }

    std::optional<FakeDesktop> m_desktop;
    std::optional<Scratch> m_scratch;
    std::unique_ptr<MainWindow> m_window;
    QString m_asked;
};
