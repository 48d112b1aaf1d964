// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/device_chooser.h"

#include "audio/audio_input_kind.h"
#include "language/localization.h"
#include "ui/settings/settings_form.h"

#include <QWheelEvent>
#include <utility>

namespace velun {

namespace {

using Scope = ProgramChoice::Scope;

/// The entry of a program has a list as its value, that of a device its id.
Choice entryOf(const ProgramChoice& program) {
  const bool isOnly = program.scope == Scope::only;
  return {title(program), QStringList{isOnly ? "only" : "allBut", program.name}};
}

ProgramChoice programOf(const QVariant& value) {
  const QStringList parts = value.toStringList();
  return {parts.first() == QLatin1String("only") ? Scope::only : Scope::allBut, parts.last()};
}

void addPrograms(std::vector<Choice>& choices, const std::vector<AudioTarget>& known) {
  for (const Scope scope : {Scope::only, Scope::allBut}) {
    for (const AudioTarget& target : known) {
      if (target.isProgram()) choices.push_back(entryOf({scope, target.id}));
    }
  }
}

}  // namespace

DeviceChooser::DeviceChooser(AppSettings& settings, AudioPlatform& audio, QWidget* parent)
    : QComboBox(parent), settings_(settings), audio_(audio) {
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  connect(this, &QComboBox::activated, this, &DeviceChooser::choose);
  for (const auto signal : {&AppSettings::outputChanged, &AppSettings::microphoneChanged,
                            &AppSettings::programChanged}) {
    connect(&settings_, signal, this, &DeviceChooser::present);
  }
  connect(&Localization::shared(), &Localization::languageChanged, this, &DeviceChooser::present);
  present();
}

DeviceChooser::~DeviceChooser() = default;

void DeviceChooser::setInput(AudioInput input) {
  if (std::exchange(input_, input) != input) present();
}

void DeviceChooser::showEvent(QShowEvent* event) {
  QComboBox::showEvent(event);
  if (event->spontaneous() || targets_) return;
  targets_ = audio_.followTargets();
  connect(targets_.get(), &AudioTargets::changed, this, &DeviceChooser::present);
  present();
}

void DeviceChooser::hideEvent(QHideEvent* event) {
  QComboBox::hideEvent(event);
  if (!event->spontaneous()) targets_.reset();
}

void DeviceChooser::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

void DeviceChooser::present() {
  const bool isMicrophone = input_ == AudioInput::microphone;
  const auto kind = deviceKind(input_);
  const DeviceChoice& chosen = settings_.device(input_);
  std::vector<Choice> devices{{isMicrophone
                                   ? L("The Computer’s Default Microphone", "컴퓨터의 기본 마이크")
                                   : L("The Computer’s Default Output", "컴퓨터의 기본 출력 장치"),
                               QString()}};
  const auto known = targets_ ? targets_->list() : std::vector<AudioTarget>();
  for (const AudioTarget& target : known) {
    if (target.kind == kind) devices.push_back({target.name, target.id});
  }
  if (!isMicrophone) addPrograms(devices, known);
  if (!isMicrophone && settings_.program().scope != ProgramChoice::Scope::all) {
    const Choice program = entryOf(settings_.program());
    return fillChooser(this, std::move(devices), program);
  }
  QString name = chosen.name.isEmpty() ? chosen.id : chosen.name;
  // Without any device, the sound server has not answered.
  if (!known.empty()) name = L("%1 (not connected)", "%1(연결 안 됨)").arg(name);
  fillChooser(this, std::move(devices), {name, chosen.id});
}

void DeviceChooser::choose(int index) {
  const QVariant value = itemData(index);
  if (value.typeId() == QMetaType::QStringList) return settings_.setProgram(programOf(value));
  if (input_ == AudioInput::computer) settings_.setProgram({});
  const QString id = value.toString();
  // The text of the chosen device may say that it is not connected.
  if (id == settings_.device(input_).id) return;
  settings_.setDevice(input_, id.isEmpty() ? DeviceChoice() : DeviceChoice{id, itemText(index)});
}

}  // namespace velun
