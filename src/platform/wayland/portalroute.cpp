#include "platform/wayland/portalroute.h"

#include "base/log.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QFile>
#include <QImageReader>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const auto s_screenshot = "org.freedesktop.portal.Screenshot"_L1;
const auto s_store = "org.freedesktop.impl.portal.PermissionStore"_L1;
const auto s_storePath = "/org/freedesktop/impl/portal/PermissionStore"_L1;

constexpr qint64 s_largestFile = 512LL << 20;
constexpr int s_greatestScale = 8;   // pixels in a logical unit
constexpr qreal s_sameRatio = 0.01;  // that sides of a picture may differ in scale, rounded
constexpr std::array s_formats{"png", "jpeg"};

// Opens a file that was written for this program, and takes its name away, so that nothing of it
// stays. False if it is no regular file of this machine; then it is left alone.
bool openTaken(QFile &file, const QString &address)
{
    const QByteArray path = QFile::encodeName(QUrl(address).toLocalFile());
    const int descriptor =
        path.isEmpty() ? -1
                       : open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0)
        return false;
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return false;
    }
    unlink(path.constData());
    return file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

// Null if it is no picture, or too large for one of `most` pixels.
QImage readTaken(QFile &file, QSize most)
{
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    const bool isKnown =
        std::find(s_formats.begin(), s_formats.end(), reader.format()) != s_formats.end();
    const QSize size = reader.size();
    if (!isKnown || file.size() > s_largestFile || size.isEmpty() || size.boundedTo(most) != size)
        return {};
    return reader.read().convertToFormat(QImage::Format_RGB32);
}

QRect logicalBox(const ScreenLayout &layout)
{
    QRect box;
    for (const ScreenLayout::Screen &screen : layout.screens())
        box |= screen.logical;
    return box;
}

// The picture of each screen in its own pixels, out of one of all of them. Empty if that has other
// sides than they have together.
QList<QImage> cut(const QImage &desktop, const ScreenLayout &layout)
{
    const QRect box = logicalBox(layout);
    const qreal across = qreal(desktop.width()) / box.width();
    const qreal down = qreal(desktop.height()) / box.height();
    if (std::abs(across / down - 1) > s_sameRatio)
        return {};
    const auto place = [&](QPointF logical) {
        return QPoint(static_cast<int>(std::lround((logical.x() - box.x()) * across)),
                      static_cast<int>(std::lround((logical.y() - box.y()) * down)));
    };
    QList<QImage> result;
    for (const ScreenLayout::Screen &screen : layout.screens()) {
        const QRectF logical = screen.logical;
        const QRect part(place(logical.topLeft()), place(logical.bottomRight()) - QPoint(1, 1));
        result.append(fitted(desktop.copy(part & desktop.rect()), screen.pixels));
    }
    return result;
}

}  // namespace

struct PortalRoute::Question {
    ScreenLayout layout{};
    PictureRoute::Answer answer{};
    QObject context{};  // of calls for this one
    std::unique_ptr<PortalRequest> request{};
};

PortalRoute::PortalRoute(std::shared_ptr<Portal> portal, PortalLimits limits)
    : m_portal(std::move(portal)), m_limits(limits), m_cast(m_portal)
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] { std::exchange(m_late, nullptr)(); });
    connect(m_portal.get(), &Portal::appeared, this, [this] { m_absence = {}; });
    connect(m_portal.get(), &Portal::gone, this, [this] { m_isThere = false; });
    // So that it is known when the first picture is wanted. The portal is started for it.
    readPermission(this, [] {});
}

PortalRoute::~PortalRoute() = default;

// What the user has said is kept beside the portal, for this program or, where that is known by no
// name, for all such together.
void PortalRoute::readPermission(QObject *context, const std::function<void()> &done)
{
    QDBusMessage lookup =
        QDBusMessage::createMethodCall(s_store, s_storePath, s_store, u"Lookup"_s);
    lookup << u"screenshot"_s << u"screenshot"_s;
    m_portal->call(lookup, context, [this, done](const QDBusMessage &reply) {
        QMap<QString, QStringList> kept;
        if (const QVariant first = reply.arguments().value(0); first.canConvert<QDBusArgument>())
            first.value<QDBusArgument>() >> kept;
        const bool isNamed = m_portal->isRegistered() || kept.contains(Portal::applicationId());
        m_keptFor = isNamed ? Portal::applicationId() : QString();
        const QStringList said = kept.value(m_keptFor);
        m_permission = said.contains(u"yes"_s)  ? Permission::Given
                       : said.contains(u"no"_s) ? Permission::Denied
                                                : Permission::Unknown;
        done();
    });
}

void PortalRoute::askAgain(const std::function<void()> &done)
{
    QDBusMessage forget =
        QDBusMessage::createMethodCall(s_store, s_storePath, s_store, u"DeletePermission"_s);
    forget << u"screenshot"_s << u"screenshot"_s << m_keptFor;
    m_portal->call(forget, this, [this, done](const QDBusMessage &) {
        m_permission = Permission::Unknown;
        done();
    });
}

void PortalRoute::take(const ScreenLayout &layout, Answer answerTo)
{
    drop();
    m_question = std::make_unique<Question>();
    m_question->layout = layout;
    m_question->answer = std::move(answerTo);
    if (!m_absence.hasExpired())
        QMetaObject::invokeMethod(
            &m_question->context, [this] { answerAbsent(); }, Qt::QueuedConnection);
    else if (m_isThere)
        request();
    else
        findOut();
}

// An interface may be there with nothing behind it: then it has no version, or is silent.
void PortalRoute::findOut()
{
    QDBusMessage get = Portal::method(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    get << QString(s_screenshot) << u"version"_s;
    m_late = [this] { findAbsent(); };
    m_limit.start(m_limits.there);
    m_portal->call(get, &m_question->context, [this](const QDBusMessage &reply) {
        m_limit.stop();
        m_isThere = reply.type() == QDBusMessage::ReplyMessage;
        if (m_isThere)
            request();
        else
            findAbsent();
    });
}

void PortalRoute::request()
{
    if (!mayAsk()) {
        m_late = [this] {
            // It seems that it does ask.
            m_permission = Permission::Unknown;
            fail(tr("The desktop did not give its picture in time."));
        };
        m_limit.start(m_limits.taken);
    }
    m_question->request = m_portal->ask(s_screenshot, u"Screenshot"_s, {QString()},
                                        {{u"interactive"_s, false}, {u"modal"_s, true}},
                                        [this](const Portal::Answer &answer) { hear(answer); });
}

void PortalRoute::hear(const Portal::Answer &answer)
{
    m_limit.stop();
    switch (answer.how) {
    case Portal::Answer::How::Absent:
        findAbsent();
        return;
    case Portal::Answer::How::Lost:
        fail(tr("The desktop's portal failed before it gave a picture. Try again."));
        return;
    case Portal::Answer::How::Given:
        break;
    }
    if (answer.code == Portal::Answer::Done)
        readPicture(answer.results.value(u"uri"_s).toString());
    else if (answer.code == Portal::Answer::Cancelled)
        fail(tr("You have cancelled the desktop's question, so there is no picture."));
    else
        tellRefusal();
}

// The code for a refusal stands for any failure.
void PortalRoute::tellRefusal()
{
    const QString failed = tr("The desktop failed to take a picture of the screen.");
    m_late = [this, failed] { fail(failed); };
    m_limit.start(m_limits.there);
    readPermission(&m_question->context, [this, failed] {
        m_limit.stop();
        fail(
            m_permission != Permission::Denied
                ? failed
                : tr("The desktop lets this program take no pictures of the screen, since that has "
                     "been refused. It can be changed in the desktop's settings for applications, "
                     "on GNOME under Apps, Snap Workbench, where they list it; else have the "
                     "desktop ask again."));
    });
}

void PortalRoute::readPicture(const QString &address)
{
    const ScreenLayout &layout = m_question->layout;
    QFile file;
    if (!openTaken(file, address)) {
        qCInfo(logGrab) << "there is no file" << address;
        fail(tr("The file with the desktop's picture is not there."));
        return;
    }
    const QImage desktop = readTaken(file, logicalBox(layout).size() * s_greatestScale);
    const QList<QImage> pictures = desktop.isNull() ? QList<QImage>() : cut(desktop, layout);
    if (pictures.isEmpty()) {
        qCInfo(logGrab) << address << "has a picture of" << desktop.size();
        fail(tr("What the desktop gave is no picture of its screens."));
        return;
    }
    m_permission = Permission::Given;
    answer({.outcome = Outcome::Taken, .pictures = pictures});
}

void PortalRoute::findAbsent()
{
    m_isThere = false;
    m_absence.setRemainingTime(m_limits.absent);
    answerAbsent();
}

void PortalRoute::answerAbsent()
{
    answer({.outcome = Outcome::Absent,
            .trouble = tr("This desktop gives programs no pictures of the screen: its portal has "
                          "no part for that, or that does not start.")});
}

void PortalRoute::answer(const Result &result)
{
    m_limit.stop();
    const std::unique_ptr<Question> done = std::move(m_question);
    done->answer(result);
}

void PortalRoute::drop()
{
    m_limit.stop();
    m_question.reset();
}
