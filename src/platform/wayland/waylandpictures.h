#pragma once

#include "platform/pictures.h"
#include "platform/wayland/screencopy.h"
#include "platform/wayland/waylandconnection.h"

#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>

class SwayWindows;

/// Pictures by screencopy. What covers a window covers it in its picture, too.
class WaylandPictures : public QObject, public Pictures
{
    Q_OBJECT
public:
    /// `windows` outlives this object.
    WaylandPictures(std::shared_ptr<WaylandConnection> connection, SwayWindows &windows);
    ~WaylandPictures() override;

    bool isLive() const override { return false; }
    void freeze(Freeze how, Answer answer) override;
    void thaw() override;
    bool isFrozen() const override { return m_frozen.has_value(); }
    QSize sizeOf(const QRect &area) const override;
    QImage ofDesktop(const QRect &area) override;
    QImage ofWindows(std::optional<QRectF> area, const QList<int> &numbers) override;
    bool isWhole(int number) const override;
    QImage withoutWindows(const QRect &area, const QList<int> &numbers) override;
    std::unique_ptr<ChangeWatch> watchChanges(int number) override;

private:
    struct Look {
        ScreenLayout layout{};
        QList<QImage> pictures{};  ///< of the layout's screens, in their order
    };
    /// A look that is being taken.
    struct Question;
    void answer(bool areThere, const QString &trouble = {});
    QRegion visibleOf(int number) const;
    void answerIfDone();
    Look lookNow(const QRect &area);

    std::shared_ptr<WaylandConnection> m_connection;
    SwayWindows &m_windows;
    std::unique_ptr<Question> m_question;
    int m_questions = 0;  // so far
    QTimer m_limit;       // of the question
    std::optional<Look> m_frozen;
    /// Memory for pictures of what moves, by screen, as long as they are taken.
    std::map<QString, std::shared_ptr<SharedPicture>> m_kept;
    QTimer m_keepsNoLonger;
};
