#include "shell/capturepage.h"

#include "platform/services.h"
#include "shell/commands.h"
#include "shell/pagelayout.h"
#include "shell/preferences.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

// A box for what is only on or off.
QCheckBox *addBox(QBoxLayout &place, const char *name, const QString &text, bool on,
                  void (*set)(bool))
{
    auto *box = new QCheckBox(text);
    box->setObjectName(QLatin1StringView(name));
    box->setChecked(on);
    place.addWidget(box);
    QObject::connect(box, &QCheckBox::toggled, box, [set](bool now) { set(now); });
    return box;
}

}  // namespace

CapturePage::CapturePage(QWidget *parent) : QWidget(parent)
{
    QVBoxLayout *layout = pageLayout(*this);
    addGoals(*layout);
    addMarking(*layout);
    addPins(*layout);
    addWindow(*layout);
    layout->addStretch();
}

void CapturePage::addGoals(QBoxLayout &place)
{
    QVBoxLayout *inside = addGroup(place, tr("After a Grab"));
    const auto add = [&](const char *name, const QString &text, GrabGoal goal) {
        auto *box = new QCheckBox(text);
        box->setObjectName(QLatin1StringView(name));
        inside->addWidget(box);
        m_goals.append({box, goal});
        connect(box, &QCheckBox::clicked, this, [this, goal](bool on) {
            GrabGoals goals = Preferences::afterGrab();
            Preferences::setAfterGrab(goals.setFlag(goal, on));
            showGoals();
        });
    };
    add("ChkTab", tr("Open in a &tab"), GrabGoal::Tab);
    add("ChkCopy", tr("C&opy to the clipboard"), GrabGoal::Copy);
    add("ChkSave", tr("&Save in the folder for pictures"), GrabGoal::Save);
    add("ChkPin", tr("P&in to the screen"), GrabGoal::Pin);
    const QString lack = services().abilities.lackOf(Ability::Pins);
    m_goals.constLast().first->setEnabled(lack.isEmpty());
    m_goals.constLast().first->setToolTip(asHint(lack));
    add("ChkText", tr("&Read the text and copy it"), GrabGoal::Text);
    add("ChkNotify", tr("Show a &notification"), GrabGoal::Notify);
    showGoals();
}

// As they are in force: a picture that would go nowhere opens in a tab. That can't be switched off
// then, and who points at it is told why.
void CapturePage::showGoals()
{
    const GrabGoals goals = Preferences::afterGrab();
    const bool goesElsewhere = goals & ~(GrabGoals(GrabGoal::Tab) | GrabGoal::Notify);
    const QString why = goesElsewhere ? QString()
                                      : tr("A picture has to go somewhere. Choose something below "
                                           "first: copying, saving or reading.");
    for (const auto &[box, goal] : m_goals) {
        box->setChecked(goals.testFlag(goal));
        if (goal == GrabGoal::Tab) {
            box->setEnabled(goesElsewhere);
            box->setToolTip(asHint(why));
            box->setAccessibleDescription(why);
        }
    }
}

void CapturePage::addMarking(QBoxLayout &place)
{
    QVBoxLayout *inside = addGroup(place, tr("Marking"));
    addBox(*inside, "ChkTakeOnRelease", tr("Take &when the button is released"),
           Preferences::takesOnRelease(), Preferences::setTakesOnRelease);
    addBox(*inside, "ChkTakeOnDoubleClick", tr("&Double click takes"),
           Preferences::takesOnDoubleClick(), Preferences::setTakesOnDoubleClick);
    addBox(*inside, "ChkClearSelection", tr("C&lear selection"), Preferences::clearSelection(),
           Preferences::setClearSelection);
    QCheckBox *freeze = addBox(*inside, "ChkFreezeScreen", tr("Free&ze the screen while choosing"),
                               Preferences::freezesScreen(), Preferences::setFreezesScreen);
    if (!services().pictures->isLive()) {
        freeze->setEnabled(false);
        freeze->setToolTip(
            asHint(tr("On this desktop the screen always stands still while you choose.")));
    }
    QCheckBox *shape = addBox(*inside, "ChkShowPointer", tr("Show the &pointer in pictures"),
                              Preferences::showsPointer(), Preferences::setShowsPointer);
    const QString lack = services().abilities.lackOf(Ability::PointerShape);
    shape->setEnabled(lack.isEmpty());
    shape->setToolTip(asHint(lack));
}

void CapturePage::addPins(QBoxLayout &place)
{
    QVBoxLayout *inside = addGroup(place, tr("Pins"));
    const QString lack = services().abilities.lackOf(Ability::Pins);
    QCheckBox *shown = addBox(*inside, "ChkShowPins", tr("Show pins in pict&ures"),
                              Preferences::showsPins(), Preferences::setShowsPins);
    QCheckBox *kept = addBox(*inside, "ChkKeepPins", tr("Bring pins &back after a restart"),
                             Preferences::keepsPins(), Preferences::setKeepsPins);
    connect(kept, &QCheckBox::toggled, this, &CapturePage::pinsChanged);
    for (QCheckBox *box : {shown, kept}) {
        box->setEnabled(lack.isEmpty());
        box->setToolTip(asHint(lack));
    }
}

void CapturePage::addWindow(QBoxLayout &place)
{
    addBox(*addGroup(place, tr("Window")), "ChkCloseToTray",
           tr("K&eep running in the tray when the window is closed"), Preferences::closesToTray(),
           Preferences::setClosesToTray);
}
