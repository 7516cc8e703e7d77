#include "shell/dialogpreference.h"

#include "shell/capturepage.h"
#include "shell/filespage.h"
#include "shell/keyspage.h"
#include "shell/preferences.h"
#include "ui_dialogpreference.h"

#include <cstdlib>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_longestTimer = 10;  // of those offered, in seconds

// A number that doesn't fit is no number: a field full of digits must not become a wait of years.
int leadingNumber(const QString &text)
{
    const long long number = std::strtoll(text.toUtf8().constData(), nullptr, 10);
    const bool fits =
        number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(number) : 0;
}

void choose(QComboBox &box, int data)
{
    if (const int index = box.findData(data); index >= 0)
        box.setCurrentIndex(index);
}

}  // namespace

DialogPreference::DialogPreference(QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::DialogPreference>())
{
    ui->setupUi(this);
    setWindowTitle(tr("Preferences"));
    setWindowFlags(Qt::Tool | Qt::WindowTitleHint | Qt::CustomizeWindowHint |
                   Qt::WindowCloseButtonHint);
    for (const int multiple : Preferences::s_magnifications)
        ui->cmbMagnification->addItem(u"%1x"_s.arg(multiple), multiple);
    for (int seconds = 0; seconds <= s_longestTimer; ++seconds)
        ui->cmbTimer->addItem(u"%1s"_s.arg(seconds), seconds);
    // It would put an entry's "s" behind each digit while a number is being typed.
    ui->cmbTimer->setCompleter(nullptr);
    auto *capture = new CapturePage;
    connect(capture, &CapturePage::pinsChanged, this, &DialogPreference::PinsChanged);
    ui->tabPages->addTab(capture, tr("&Capture"));
    ui->tabPages->addTab(new FilesPage, tr("&Files"));
    auto *keys = new KeysPage;
    ui->tabPages->addTab(keys, tr("&Keys"));
    connect(keys, &KeysPage::changed, this, &DialogPreference::HotKeysChanged);
    ui->ChkAutoRun->setFocus();
    // The form's size, and more only where a larger font or longer words need it.
    resize(size().expandedTo(sizeHint()));
}

DialogPreference::~DialogPreference() = default;

void DialogPreference::SetAutoRun(bool on) { ui->ChkAutoRun->setChecked(on); }

void DialogPreference::SetRunMin(bool on) { ui->ChkRunMin->setChecked(on); }

void DialogPreference::SetHide(bool on) { ui->ChkHide->setChecked(on); }

void DialogPreference::SetShow(bool on) { ui->ChkShow->setChecked(on); }

void DialogPreference::SetScreenTimer(int seconds)
{
    choose(*ui->cmbTimer, seconds);
    ui->cmbTimer->setEditText(u"%1s"_s.arg(seconds));
}

void DialogPreference::SetShowMag(bool on)
{
    ui->ChkShowMag->setChecked(on);
    followShowMag();
}

void DialogPreference::SetMagnification(int multiple) { choose(*ui->cmbMagnification, multiple); }

void DialogPreference::SetRememberStyles(bool on) { ui->ChkRememberStyles->setChecked(on); }

void DialogPreference::SetKeepLineColour(bool on) { ui->ChkKeepLineColour->setChecked(on); }

bool DialogPreference::GetAutoRun() const { return ui->ChkAutoRun->isChecked(); }

bool DialogPreference::GetRunMin() const { return ui->ChkRunMin->isChecked(); }

bool DialogPreference::GetHide() const { return ui->ChkHide->isChecked(); }

bool DialogPreference::GetShow() const { return ui->ChkShow->isChecked(); }

int DialogPreference::GetScreenTimer() const { return leadingNumber(m_TimerText); }

bool DialogPreference::GetShowMag() const { return ui->ChkShowMag->isChecked(); }

int DialogPreference::GetMagnification() const
{
    return ui->cmbMagnification->currentData().toInt();
}

bool DialogPreference::GetRememberStyles() const { return ui->ChkRememberStyles->isChecked(); }

bool DialogPreference::GetKeepLineColour() const { return ui->ChkKeepLineColour->isChecked(); }

void DialogPreference::on_ChkAutoRun_stateChanged(int /*state*/) { emit Changed(); }

void DialogPreference::on_ChkRunMin_stateChanged(int /*state*/) { emit Changed(); }

void DialogPreference::on_ChkHide_stateChanged(int /*state*/) { emit Changed(); }

void DialogPreference::on_ChkShow_stateChanged(int /*state*/) { emit Changed(); }

void DialogPreference::on_ChkShowMag_stateChanged(int /*state*/) { followShowMag(); }

void DialogPreference::on_ChkRememberStyles_stateChanged(int /*state*/) { emit Changed(); }

void DialogPreference::on_ChkKeepLineColour_stateChanged(int /*state*/) { emit Changed(); }

// The label beside it stays as it is.
void DialogPreference::followShowMag()
{
    ui->cmbMagnification->setEnabled(ui->ChkShowMag->checkState() == Qt::Checked);
    emit Changed();
}

void DialogPreference::on_cmbTimer_editTextChanged(const QString &text)
{
    m_TimerText = text;
    emit Changed();
}

void DialogPreference::on_cmbMagnification_currentIndexChanged(int /*index*/) { emit Changed(); }
