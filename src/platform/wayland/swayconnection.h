#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>
#include <QQueue>

#include <functional>

class QTimer;

/// Talks with sway, or a compositor that speaks as it does, over its socket. Nothing waits here: an
/// answer comes from the event loop, or an empty one if none comes in time.
class SwayConnection : public QObject
{
    Q_OBJECT
public:
    using Answer = std::function<void(const QByteArray &json)>;

    SwayConnection();
    ~SwayConnection() override;

    /// Whether there is such a socket in this session.
    static bool isThere();

    /// The tree of all screens, work spaces and windows.
    void askForTree(const Answer &answer);
    void command(const QString &text);
    /// Lets `changed` hear of each change of a window, as long as this object lives. It must not be
    /// deleted from there.
    void followWindows(std::function<void(const QByteArray &json)> changed);

private:
    enum class Message : quint32 { Command = 0, Subscribe = 2, Tree = 4 };
    void send(Message message, const QByteArray &text, const Answer &answer);
    void readAnswers();
    void giveUp();

    QLocalSocket m_socket;
    QQueue<Answer> m_waiting;
    Answer m_changed;
    QTimer *m_limit;
};
