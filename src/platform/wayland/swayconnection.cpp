#include "platform/wayland/swayconnection.h"

#include "base/log.h"

#include <QDir>
#include <QTimer>

#include <array>
#include <cstring>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_answerLimit = 1000;  // ms
constexpr QByteArrayView s_magic = "i3-ipc";
constexpr quint32 s_event = 0x80000000;         // told unasked
constexpr qint64 s_longest = qint64(16) << 20;  // bytes of an answer

// Before each message; the numbers are in the machine's own order.
struct Header {
    quint32 length = 0;
    quint32 message = 0;
};
constexpr qint64 s_headerSize = s_magic.size() + qint64(sizeof(Header));

// A program that was not started by the compositor isn't told of its socket.
QString socketPath()
{
    QString told = qEnvironmentVariable("SWAYSOCK");
    if (!told.isEmpty())
        return told;
    const QDir folder(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    const QStringList names = folder.entryList({u"sway-ipc.%1.*.sock"_s.arg(getuid())},
                                               QDir::System | QDir::Files, QDir::Time);
    return names.isEmpty() ? QString() : folder.filePath(names.constFirst());
}

}  // namespace

SwayConnection::SwayConnection() : m_limit(new QTimer(this))
{
    m_limit->setSingleShot(true);
    m_limit->setInterval(s_answerLimit);
    connect(m_limit, &QTimer::timeout, this, &SwayConnection::giveUp);
    connect(&m_socket, &QLocalSocket::readyRead, this, &SwayConnection::readAnswers);
    connect(&m_socket, &QLocalSocket::errorOccurred, this, &SwayConnection::giveUp);
}

// Nobody is there any more to hear of it.
SwayConnection::~SwayConnection()
{
    m_socket.disconnect(this);
    m_socket.abort();
}

bool SwayConnection::isThere() { return !socketPath().isEmpty(); }

void SwayConnection::askForTree(const Answer &answer) { send(Message::Tree, {}, answer); }

void SwayConnection::command(const QString &text) { send(Message::Command, text.toUtf8(), {}); }

void SwayConnection::followWindows(std::function<void(const QByteArray &)> changed)
{
    m_changed = std::move(changed);
    send(Message::Subscribe, R"(["window"])", {});
}

void SwayConnection::send(Message message, const QByteArray &text, const Answer &answer)
{
    if (m_socket.state() == QLocalSocket::UnconnectedState)
        m_socket.connectToServer(socketPath());
    m_waiting.enqueue(answer);
    if (m_socket.state() == QLocalSocket::UnconnectedState) {
        QMetaObject::invokeMethod(this, &SwayConnection::giveUp, Qt::QueuedConnection);
        return;
    }
    const Header header{static_cast<quint32>(text.size()), static_cast<quint32>(message)};
    m_socket.write(s_magic.data(), s_magic.size());
    m_socket.write(reinterpret_cast<const char *>(&header), sizeof header);
    m_socket.write(text);
    m_socket.flush();
    m_limit->start();
}

void SwayConnection::readAnswers()
{
    while (m_socket.bytesAvailable() >= s_headerSize) {
        const QByteArray head = m_socket.peek(s_headerSize);
        Header header;
        std::memcpy(&header, head.constData() + s_magic.size(), sizeof header);
        if (!head.startsWith(s_magic) || header.length > s_longest) {
            giveUp();
            return;
        }
        if (m_socket.bytesAvailable() < s_headerSize + header.length)
            return;
        m_socket.skip(s_headerSize);
        const QByteArray json = m_socket.read(header.length);
        if (header.message & s_event || m_waiting.isEmpty()) {
            if (m_changed)
                m_changed(json);
            continue;
        }
        if (m_waiting.size() == 1)
            m_limit->stop();
        if (const Answer answer = m_waiting.dequeue(); answer)
            answer(json);
    }
}

// Answers that come too late would be taken for those to later questions.
void SwayConnection::giveUp()
{
    m_limit->stop();
    qCInfo(logGrab) << "the compositor's socket does not answer:" << m_socket.errorString();
    const QSignalBlocker silence(m_socket);
    m_socket.abort();
    const QQueue<Answer> waiting = std::exchange(m_waiting, {});
    for (const Answer &answer : waiting) {
        if (answer)
            answer({});
    }
}
