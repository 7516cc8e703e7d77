#pragma once

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDeadlineTimer>
#include <QImage>
#include <QObject>
#include <QTimer>
#include <QVariantList>

#include <functional>
#include <memory>

/// One picture of KWin's, of a screen or of a window, in the pixels of its screen.
class KWinShot : public QObject
{
    Q_OBJECT
public:
    enum class Outcome {
        Taken,
        Absent,   ///< KWin has no such service, as where it draws without a graphics card
        Refused,  ///< no desktop entry that is installed lets this program use it
        Failed,
        Late,
    };

    /// `bus` is the one that KWin is on. The picture is given up after `limit` milliseconds.
    static std::unique_ptr<KWinShot> ofScreen(const QDBusConnection &bus, const QString &name,
                                              bool withPointer, int limit);
    /// All of it with its frame; `id` is KWin's own.
    static std::unique_ptr<KWinShot> ofWindow(const QDBusConnection &bus, const QString &id,
                                              int limit);
    ~KWinShot() override;

    /// `answer` is called once, from the event loop. It may delete this object, which gives the
    /// picture up.
    void whenDone(std::function<void()> answer);
    /// Waits for it without running events.
    void wait();

    Outcome outcome() const { return m_outcome; }
    /// Null unless it was taken.
    const QImage &picture() const { return m_picture; }

private:
    KWinShot(const QDBusConnection &bus, const QString &method, QVariantList arguments, int limit);
    void takeReply();
    void read();
    void finish(Outcome outcome);

    std::unique_ptr<QDBusPendingCallWatcher> m_call;
    int m_pipe = -1;  // its end for reading
    QDeadlineTimer m_deadline;
    QTimer m_limit;        // runs out early when it is done
    QImage m_reading;      // what is read into
    qsizetype m_size = 0;  // of it in bytes, that have been read
    bool m_isDone = false;
    Outcome m_outcome = Outcome::Failed;
    QImage m_picture;
};
