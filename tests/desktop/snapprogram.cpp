#include "snapprogram.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QString s_name = u"org.example.brenvale.SnapWorkbench"_s;
constexpr int s_stateLimit = 1000;  // ms; a program that is busy is asked again

QDomDocument parsed(const QString &path)
{
    QFile file(path);
    QDomDocument document;
    if (file.open(QIODevice::ReadOnly))
        document.setContent(&file);
    return document;
}

}  // namespace

SnapProgram::~SnapProgram() { QDBusConnection::disconnectFromBus(m_session.home()); }

QString SnapProgram::program() { return PrivateSession::built(QStringLiteral(SNAP_PROGRAM)); }

QString SnapProgram::shippedFile() { return QFileInfo(program()).path() + u"/SnapWorkbench.xml"_s; }

QString SnapProgram::dataFolder() const { return m_session.home() + u"/data/SnapWorkbench"_s; }

void SnapProgram::writeSettings(const QMap<QString, QString> &settings,
                                const QMap<QString, QString> &pictures) const
{
    QDomDocument document = parsed(shippedFile());
    QDomElement config = document.documentElement().firstChildElement(u"Config"_s);
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        QDomElement element = config.firstChildElement(it.key());
        if (element.isNull())
            element = config.appendChild(document.createElement(it.key())).toElement();
        element.setAttribute(u"data"_s, it.value());
    }
    QString text = document.toString(1);
    const QDir programFolder(QFileInfo(program()).path());
    for (auto it = pictures.cbegin(); it != pictures.cend(); ++it)
        text.replace(u"\"skin/%1.png\""_s.arg(it.key()),
                     u"\"%1\""_s.arg(programFolder.relativeFilePath(it.value())));
    QDir().mkpath(dataFolder());
    QFile file(resourceFile());
    if (file.open(QIODevice::WriteOnly))
        file.write(text.toUtf8());
}

QString SnapProgram::setting(const QString &key) const
{
    return parsed(resourceFile())
        .documentElement()
        .firstChildElement(u"Config"_s)
        .firstChildElement(key)
        .attribute(u"data"_s);
}

QProcess *SnapProgram::start(const QMap<QString, QString> &variables)
{
    QProcessEnvironment environment = m_session.environment();
    for (auto it = variables.cbegin(); it != variables.cend(); ++it)
        environment.insert(it.key(), it.value());
    m_process = m_session.start(program(), {}, environment);
    return m_process;
}

QDBusMessage SnapProgram::call(const QString &interface, const QString &method,
                               const QVariantList &arguments, int limit)
{
    const QString address = m_session.environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s);
    QDBusMessage message = QDBusMessage::createMethodCall(
        s_name, u"/org/example/brenvale/SnapWorkbench"_s, interface, method);
    message.setArguments(arguments);
    return QDBusConnection::connectToBus(address, m_session.home())
        .call(message, QDBus::Block, limit);
}

bool SnapProgram::activate(const QString &action)
{
    return call(u"org.freedesktop.Application"_s, u"ActivateAction"_s,
                {action, QVariantList(), QVariantMap()})
               .type() == QDBusMessage::ReplyMessage;
}

QString SnapProgram::grabState()
{
    const QDBusMessage answer = call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                     {s_name, u"GrabState"_s}, s_stateLimit);
    return answer.arguments().value(0).value<QDBusVariant>().variant().toString();
}

bool SnapProgram::waitForState(const QString &state, int limit)
{
    return waitFor([&] { return grabState() == state; }, limit);
}
