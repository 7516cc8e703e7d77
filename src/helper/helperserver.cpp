#include "helper/helperserver.h"

#include "base/log.h"
#include "helper/contentcapture.h"
#include "helper/menucapture.h"
#include "platform/services.h"

#include <QCoreApplication>
#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Light compression, because the file is read once and removed, and long pages are mostly blank.
constexpr int s_quality = 80;

// The user was asked for the permission and continued without it.
bool s_answered = false;

class HelperServer : public QObject
{
    Q_DECLARE_TR_FUNCTIONS(HelperServer)
public:
    explicit HelperServer(GWCaptureStatus callback) : m_callback(callback) {}
    ~HelperServer() override
    {
        drop();
        // The finished picture has not been delivered, so nobody else will remove it.
        if (!m_undelivered.isEmpty())
            QFile::remove(m_undelivered);
    }

    void begin(std::unique_ptr<HelperJob> job, const char *folder)
    {
        m_job = std::move(job);
        m_folder = QString::fromUtf8(folder);
        connect(m_job.get(), &HelperJob::taken, this, &HelperServer::save);
        connect(m_job.get(), &HelperJob::ended, this, [this] {
            drop();
            report(GWCaptureEnded);
        });
        connect(m_job.get(), &HelperJob::failed, this, &HelperServer::fail);
        connect(m_job.get(), &HelperJob::opened, this, [this] { report(GWCaptureOpen); });
        connect(m_job.get(), &HelperJob::picked, this,
                [this](const QString &application, const QString &title) {
                    report(GWCapturePicked, application.toUtf8(), 0, title.toUtf8());
                });
        connect(m_job.get(), &HelperJob::scrolls, this, [this] { report(GWCaptureScrolling); });
        connect(m_job.get(), &HelperJob::putsBack, this, [this] { report(GWCapturePuttingBack); });
        connect(m_job.get(), &HelperJob::progressed, this,
                [this](const QString &text) { report(GWCaptureProgress, {}, 0, text.toUtf8()); });
        report(GWCaptureWorking);
        // The job starts after this report has been handled, which hides this program's windows.
        QMetaObject::invokeMethod(m_job.get(), &HelperJob::run, Qt::QueuedConnection);
    }

    void giveUp()
    {
        if (m_job)
            m_job->giveUp();
    }

    bool isWorking() const { return m_job != nullptr; }
    bool waitsForMenu() const { return qobject_cast<MenuCapture *>(m_job.get()); }

    void keep()
    {
        if (m_job)
            m_job->keep();
    }

    void stopMenu()
    {
        if (!waitsForMenu())
            return;
        drop();
        report(GWCaptureEnded);
    }

private:
    void drop()
    {
        if (m_job)
            m_job.release()->dismiss();
    }

    void save(const QImage &picture, const QString &note)
    {
        drop();
        const QString path = m_folder + u"/capture.png"_s;
        // Creates a new file that only the user can read from its first byte on.
        QFile::remove(path);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly,
                      QFile::ReadOwner | QFile::WriteOwner) &&
            picture.save(&file, "PNG", s_quality) && file.flush()) {
            m_undelivered = path;
            report(GWCaptureFinished, path.toUtf8(), 0, note.toUtf8());
            return;
        }
        if (file.isOpen())
            file.remove();
        fail(HelperJob::NotWritten,
             tr("The picture could not be written: %1").arg(file.errorString()));
    }

    void fail(HelperJob::Failure failure, const QString &text)
    {
        drop();
        report(GWCaptureFailed, {}, failure, text.toUtf8());
    }

    void report(int status, const QByteArray &path = {}, int failure = 0,
                const QByteArray &text = {})
    {
        qCInfo(logHelper) << "status" << status << "failure" << failure << text;
        QMetaObject::invokeMethod(
            this,
            [=, this] {
                if (status == GWCaptureFinished)
                    m_undelivered.clear();
                m_callback(nullptr, status, path.isNull() ? nullptr : path.constData(), failure,
                           text.constData());
            },
            Qt::QueuedConnection);
    }

    GWCaptureStatus m_callback;
    std::unique_ptr<HelperJob> m_job;
    QString m_folder;
    QString m_undelivered;
};

// Never destroyed when the process ends, because the end may come during a grab after the display
// was lost. The grab would then access windows that no longer exist.
std::unique_ptr<HelperServer> &server()
{
    static auto *const s_server = new std::unique_ptr<HelperServer>;
    return *s_server;
}

bool canStart(const char *folder)
{
    const bool can = server() && folder && !server()->isWorking();
    if (!can)
        qCInfo(logHelper) << "no grab is started: nobody listens, or one is under way";
    return can;
}

}  // namespace

void GWSnapWorkbenchStartMessageServer(GWCaptureStatus callback)
{
    server() = callback ? std::make_unique<HelperServer>(callback) : nullptr;
}

void GWSnapWorkbenchStartMenuItemCapture(const char *folder)
{
    if (canStart(folder))
        server()->begin(std::make_unique<MenuCapture>(), folder);
}

void GWSnapWorkbenchGiveUp()
{
    if (server())
        server()->giveUp();
}

void GWSnapWorkbenchStopMenuItemCapture()
{
    if (server())
        server()->stopMenu();
}

void GWSnapWorkbenchStartSessionCapture(const char *folder)
{
    // The user was asked for the permission before, and has started the grab without it.
    if (!GWSnapWorkbenchIsEnableAccessibilty())
        s_answered = true;
    if (canStart(folder))
        server()->begin(std::make_unique<ContentCapture>(), folder);
}

void GWSnapWorkbenchKeepContent()
{
    if (server())
        server()->keep();
}

bool GWSnapWorkbenchIsEnableAccessibilty() { return services().accessibility->isEnabled(); }

int GWSnapWorkbenchTestProcessTrusted(bool *answered)
{
    if (answered)
        *answered = s_answered;
    return GWSnapWorkbenchIsEnableAccessibilty() ? 1 : 0;
}

bool GWSnapWorkbenchIsRunningInMavericksOrMore() { return false; }

void GWSnapWorkbenchMakeProcessTrusted() { services().accessibility->enable(); }
