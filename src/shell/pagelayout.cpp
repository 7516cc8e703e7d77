#include "shell/pagelayout.h"

#include <QGroupBox>
#include <QMargins>
#include <QVBoxLayout>

namespace {

constexpr QMargins s_pageMargins(16, 14, 16, 16);
constexpr QMargins s_groupMargins(14, 10, 14, 12);
constexpr int s_pageSpacing = 12;
constexpr int s_groupSpacing = 8;

}  // namespace

QVBoxLayout *pageLayout(QWidget &page)
{
    auto *layout = new QVBoxLayout(&page);
    layout->setContentsMargins(s_pageMargins);
    layout->setSpacing(s_pageSpacing);
    return layout;
}

QVBoxLayout *addGroup(QBoxLayout &place, const QString &caption)
{
    auto *group = new QGroupBox(caption);
    auto *inside = new QVBoxLayout(group);
    inside->setContentsMargins(s_groupMargins);
    inside->setSpacing(s_groupSpacing);
    place.addWidget(group);
    return inside;
}
