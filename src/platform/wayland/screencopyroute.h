#pragma once

#include "platform/wayland/pictureroute.h"
#include "platform/wayland/screencopy.h"
#include "platform/wayland/waylandconnection.h"

#include <QObject>
#include <QTimer>

#include <map>
#include <memory>

/// Pictures by screencopy, from a compositor that has it.
class ScreencopyRoute : public QObject, public PictureRoute
{
    Q_OBJECT
public:
    explicit ScreencopyRoute(std::shared_ptr<WaylandConnection> connection);
    ~ScreencopyRoute() override;

    void take(const ScreenLayout &layout, Answer answer) override;
    void showPointer(bool shows) override { m_showsPointer = shows; }
    void drop() override;
    QList<QImage> takeNow(const ScreenLayout &layout, const QRect &area) override;

private:
    /// A look that is being taken.
    struct Question;
    void answer(Outcome outcome, const QString &trouble = {});

    std::shared_ptr<WaylandConnection> m_connection;
    std::unique_ptr<Question> m_question;
    QTimer m_limit;  // of the question
    bool m_showsPointer = false;
    /// Memory for pictures of what moves, by screen, as long as they are taken.
    std::map<QString, std::shared_ptr<SharedPicture>> m_kept;
    QTimer m_keepsNoLonger;
};
