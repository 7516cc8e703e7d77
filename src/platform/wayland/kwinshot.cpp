#include "platform/wayland/kwinshot.h"

#include "base/log.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_pipeSize = 1 << 20;   // bytes that wait in it
constexpr int s_longestSide = 32767;  // that a painter can draw

KWinShot::Outcome outcomeOf(const QDBusError &error)
{
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::UnknownObject:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
    case QDBusError::Disconnected:
        return KWinShot::Outcome::Absent;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return KWinShot::Outcome::Late;
    default:
        return error.name().endsWith(u".NoAuthorized") ? KWinShot::Outcome::Refused
                                                       : KWinShot::Outcome::Failed;
    }
}

// KWin tells a picture's format by the toolkit's number for it. All that it uses have four bytes
// for a pixel.
bool isKnown(uint format)
{
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
           format == QImage::Format_ARGB32_Premultiplied || format == QImage::Format_RGBX8888 ||
           format == QImage::Format_RGBA8888 || format == QImage::Format_RGBA8888_Premultiplied;
}

// Memory for what KWin says of it; null if that is no picture.
QImage imageFor(const QVariantMap &told)
{
    const uint width = told[u"width"_s].toUInt();
    const uint height = told[u"height"_s].toUInt();
    const uint format = told[u"format"_s].toUInt();
    if (!isKnown(format) || width > s_longestSide || height > s_longestSide)
        return {};
    const QImage image(static_cast<int>(width), static_cast<int>(height),
                       static_cast<QImage::Format>(format));
    return told[u"stride"_s].toUInt() == image.bytesPerLine() ? image : QImage();
}

}  // namespace

std::unique_ptr<KWinShot> KWinShot::ofScreen(const QDBusConnection &bus, const QString &name,
                                             bool withPointer, int limit)
{
    const QVariantMap options{{u"native-resolution"_s, true}, {u"include-cursor"_s, withPointer}};
    return std::unique_ptr<KWinShot>(new KWinShot(bus, u"CaptureScreen"_s, {name, options}, limit));
}

std::unique_ptr<KWinShot> KWinShot::ofWindow(const QDBusConnection &bus, const QString &id,
                                             int limit)
{
    const QVariantMap options{{u"native-resolution"_s, true},
                              {u"include-decoration"_s, true},
                              {u"include-shadow"_s, false}};
    return std::unique_ptr<KWinShot>(new KWinShot(bus, u"CaptureWindow"_s, {id, options}, limit));
}

KWinShot::KWinShot(const QDBusConnection &bus, const QString &method, QVariantList arguments,
                   int limit)
    : m_deadline(limit)
{
    m_limit.setSingleShot(true);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        finish(Outcome::Failed);
        return;
    }
    m_pipe = ends[0];
    fcntl(m_pipe, F_SETFL, O_NONBLOCK);
    fcntl(m_pipe, F_SETPIPE_SZ, s_pipeSize);
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.kde.KWin"_s, u"/org/kde/KWin/ScreenShot2"_s, u"org.kde.KWin.ScreenShot2"_s, method);
    QDBusUnixFileDescriptor end;
    end.giveFileDescriptor(ends[1]);
    arguments.append(QVariant::fromValue(end));
    call.setArguments(arguments);
    call.setAutoStartService(false);
    m_call = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(call, limit));
}

KWinShot::~KWinShot()
{
    if (m_pipe >= 0)
        close(m_pipe);
}

void KWinShot::whenDone(std::function<void()> answer)
{
    connect(&m_limit, &QTimer::timeout, this, [this, answer = std::move(answer)] {
        if (!m_isDone)
            finish(Outcome::Late);
        // A copy, since it may delete this object.
        const auto whenDone = answer;
        m_limit.stop();
        whenDone();
    });
    m_limit.start(m_isDone ? 0 : static_cast<int>(m_deadline.remainingTime()));
    if (m_isDone)
        return;
    connect(m_call.get(), &QDBusPendingCallWatcher::finished, this, [this] {
        takeReply();
        if (m_isDone)
            return;
        auto *notifier = new QSocketNotifier(m_pipe, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
            read();
            notifier->setEnabled(!m_isDone);
        });
    });
}

void KWinShot::wait()
{
    if (m_isDone)
        return;
    m_call->waitForFinished();
    takeReply();
    while (!m_isDone) {
        pollfd end{.fd = m_pipe, .events = POLLIN, .revents = 0};
        if (poll(&end, 1, static_cast<int>(m_deadline.remainingTime())) > 0)
            read();
        else if (m_deadline.hasExpired())
            finish(Outcome::Late);
    }
}

// KWin first says what the picture is, and then writes its bytes into the pipe.
void KWinShot::takeReply()
{
    const QDBusPendingReply<QVariantMap> reply = *m_call;
    if (reply.isError()) {
        qCInfo(logGrab) << "KWin gives no picture:" << reply.error().name()
                        << reply.error().message();
        finish(outcomeOf(reply.error()));
        return;
    }
    m_reading = imageFor(reply.value());
    if (m_reading.isNull()) {
        qCInfo(logGrab) << "KWin gives a picture of an unknown kind:" << reply.value();
        finish(Outcome::Failed);
    }
}

// The toolkit keeps the pipe's other end open, so that the picture's size alone tells when all has
// come.
void KWinShot::read()
{
    while (m_size < m_reading.sizeInBytes()) {
        const ssize_t got = ::read(m_pipe, m_reading.bits() + m_size,
                                   static_cast<size_t>(m_reading.sizeInBytes() - m_size));
        if (got > 0)
            m_size += got;
        else if (got == 0 || errno != EINTR)
            return;
    }
    m_picture = std::move(m_reading);
    finish(Outcome::Taken);
}

void KWinShot::finish(Outcome outcome)
{
    m_isDone = true;
    m_outcome = outcome;
    if (m_limit.isActive())
        m_limit.start(0);
}
