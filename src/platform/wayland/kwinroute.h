#pragma once

#include "platform/wayland/kwinshot.h"
#include "platform/wayland/pictureroute.h"

#include <memory>
#include <utility>
#include <vector>

/// Pictures by KWin's own service for them, for a program whose desktop entry asks for it.
class KWinRoute : public QObject, public PictureRoute
{
    Q_OBJECT
public:
    /// Whether KWin is on that bus.
    static bool isThere(const QDBusConnection &bus);
    /// take() gives up after `limit` milliseconds.
    explicit KWinRoute(QDBusConnection bus, int limit = 5000)
        : m_bus(std::move(bus)), m_limit(limit)
    {
    }

    void take(const ScreenLayout &layout, Answer answer) override;
    void showPointer(bool shows) override { m_showsPointer = shows; }
    void drop() override;
    QList<QImage> takeNow(const ScreenLayout &layout, const QRect &area) override;

private:
    void answerIfDone();

    QDBusConnection m_bus;
    int m_limit;
    ScreenLayout m_layout;
    std::vector<std::unique_ptr<KWinShot>> m_shots;
    qsizetype m_missing = 0;  // of them
    Answer m_answer;
    bool m_showsPointer = false;
};
