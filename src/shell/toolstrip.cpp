#include "shell/toolstrip.h"

#include "editing/tools/tooltable.h"
#include "shell/mainwindow.h"
#include "shell/skinbutton.h"

#include <QBoxLayout>

namespace {

constexpr QSize s_size(28, 28);  // logical pixels

QWidget *tabStopBefore(const QWidget &widget)
{
    QWidget *before = widget.previousInFocusChain();
    while (before != &widget && !(before->focusPolicy() & Qt::TabFocus))
        before = before->previousInFocusChain();
    return before;
}

}  // namespace

void addToolButtons(QBoxLayout &strip, QWidget &next)
{
    QWidget *before = tabStopBefore(next);
    int place = 0;
    for (const Tool *tool : allTools()) {
        auto *button = new SkinButton(strip.parentWidget());
        button->setObjectName(QLatin1StringView(tool->button));
        button->setAccessibleName(MainWindow::tr(tool->name));
        button->setFixedSize(s_size);
        strip.insertWidget(place++, button);
        QWidget::setTabOrder(before, button);
        before = button;
    }
}
