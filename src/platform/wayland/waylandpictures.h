#pragma once

#include "platform/pictures.h"
#include "platform/wayland/pictureroute.h"
#include "platform/wayland/waylandconnection.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

class WaylandWindows;

/// Pictures of the screens by the first route that serves. Those of single windows are the
/// compositor's, or, where it has none, what is seen of them.
class WaylandPictures : public QObject, public Pictures
{
    Q_OBJECT
public:
    using Routes = std::vector<std::unique_ptr<PictureRoute>>;
    /// The routes are tried in their order. `windows` outlives this object.
    WaylandPictures(std::shared_ptr<WaylandConnection> connection, Routes routes,
                    WaylandWindows &windows);
    ~WaylandPictures() override;

    bool isLive() const override { return false; }
    bool mayAsk() const override;
    bool canAskAgain() const override { return m_routes.at(m_serving)->canAskAgain(); }
    void askAgain(const std::function<void()> &done) override
    {
        m_routes.at(m_serving)->askAgain(done);
    }
    void freeze(Freeze how, Answer answer) override;
    void thaw() override;
    bool mayAskToWatch() const override;
    void watch(const Answer &answer) override;
    void unwatch() override;
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
    void tryRoute(size_t index);
    void answer(bool areThere, const QString &trouble = {});
    QRegion visibleOf(int number) const;
    void answerIfDone();
    Look lookNow(const QRect &area);

    std::shared_ptr<WaylandConnection> m_connection;
    Routes m_routes;
    size_t m_serving = 0;  // the route that had pictures last
    WaylandWindows &m_windows;
    std::unique_ptr<Question> m_question;
    int m_questions = 0;  // so far
    std::optional<Look> m_frozen;
};
