#include "SimulatorPanel.h"

#include "ui_SimulatorPanel.h"

#include "ItemChoice.h"
#include "SimulatedBus.h"
#include "SimulatedUnit.h"

#include <QScreen>

#include <array>

namespace kavelo {
namespace {

struct FaultItem
{
    FaultKind kind;
    QString text;
};

std::array<FaultItem, 7> faultItems()
{
    return {{
        {FaultKind::None, QStringLiteral("None")},
        {FaultKind::RefuseSend, QStringLiteral("Refuse the send")},
        {FaultKind::DropReply, QStringLiteral("Drop the reply")},
        {FaultKind::AnswerLate, QStringLiteral("Answer late")},
        {FaultKind::AnswerTwice, QStringLiteral("Answer twice")},
        {FaultKind::AnswerGarbage, QStringLiteral("Answer garbage")},
        {FaultKind::Unplug, QStringLiteral("Unplug")},
    }};
}

std::array<QSpinBox *, 3> versionBoxes(const Ui::SimulatorPanel &ui)
{
    return {ui.versionMajor, ui.versionMinor, ui.versionRevision};
}

} // namespace

SimulatorPanel::SimulatorPanel(SimulatedUnit &unit, QWidget *parent)
    : QMainWindow(parent)
    , m_unit(unit)
    , m_ui(std::make_unique<Ui::SimulatorPanel>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_QuitOnClose, false);
    m_ui->numberOfPedals->setMaximum(MaxPedals);
    m_ui->advancedPedal->setMaximum(MaxPedals - 1);
    m_ui->replyDelay->setMaximum(static_cast<int>(SimulatedUnit::MaxReplyDelay.count()));
    for (const FaultItem &item : faultItems()) {
        m_ui->fault->addItem(item.text, static_cast<int>(item.kind));
    }
    new ItemChoice(*m_ui->fault); // owned by the box
    // The form's size suits small fonts only.
    resize(sizeHint().expandedTo(size()).boundedTo(screen()->availableSize()));
    showUnit();
    connectControls();
}

SimulatorPanel::~SimulatorPanel() = default;

void SimulatorPanel::showUnit()
{
    showPlugged(m_unit.isPowered());
    m_ui->numberOfPedals->setValue(m_unit.memory().numberOfPedals);
    const auto boxes = versionBoxes(*m_ui);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        boxes.at(i)->setValue(m_unit.memory().version.at(i));
    }
    m_ui->replyDelay->setValue(static_cast<int>(m_unit.replyDelay().count()));
    m_ui->lateness->setValue(static_cast<int>(m_unit.lateness().count()));
    m_ui->fault->setCurrentIndex(m_ui->fault->findData(static_cast<int>(m_unit.fault().kind)));
    m_ui->faultExchange->setValue(m_unit.fault().exchange);
}

void SimulatorPanel::connectControls()
{
    connect(m_ui->pluggedIn, &QCheckBox::toggled, this, &SimulatorPanel::plug);
    connect(m_ui->replug, &QPushButton::clicked, this, &SimulatorPanel::replug);
    connect(m_ui->factorySettings, &QPushButton::clicked, &m_unit, &SimulatedUnit::factorySettings);
    connect(&m_unit, &SimulatedUnit::poweredChanged, this, &SimulatorPanel::showPlugged);
    connect(m_ui->numberOfPedals, &QSpinBox::valueChanged, this, [this](int count) {
        m_unit.memory().numberOfPedals = static_cast<std::uint8_t>(count);
    });
    for (const QSpinBox *box : versionBoxes(*m_ui)) {
        connect(box, &QSpinBox::valueChanged, this, &SimulatorPanel::setVersion);
    }
    connect(m_ui->replyDelay, &QSpinBox::valueChanged, this,
            [this](int delay) { m_unit.setReplyDelay(std::chrono::milliseconds(delay)); });
    connect(m_ui->lateness, &QSpinBox::valueChanged, this,
            [this](int lateness) { m_unit.setLateness(std::chrono::milliseconds(lateness)); });
    connect(m_ui->openAdvanced, &QPushButton::clicked, this, [this] {
        Q_EMIT advancedDialogRequested(m_ui->advancedPedal->value(),
                                       m_ui->settingEnabled->isChecked());
    });
    // Unlike currentIndexChanged, this signal also comes when the same fault is chosen again.
    connect(m_ui->fault, &QComboBox::activated, this, &SimulatorPanel::setFault);
    connect(m_ui->faultExchange, &QSpinBox::valueChanged, this, &SimulatorPanel::setFault);
    connect(&m_unit, &SimulatedUnit::exchanged, m_ui->exchanges, &ExchangeList::record);
    connect(m_ui->clear, &QPushButton::clicked, m_ui->exchanges, &ExchangeList::clear);
}

void SimulatorPanel::showPlugged(bool pluggedIn)
{
    m_ui->pluggedIn->setChecked(pluggedIn);
    m_ui->replug->setEnabled(pluggedIn);
}

void SimulatorPanel::plug(bool in)
{
    if (in && !m_unit.isPowered()) {
        bus::plugIn(m_unit);
    } else if (!in && m_unit.isPowered()) {
        bus::unplug(m_unit);
    }
}

void SimulatorPanel::replug()
{
    bus::unplug(m_unit);
    bus::plugIn(m_unit);
}

void SimulatorPanel::setVersion()
{
    const auto boxes = versionBoxes(*m_ui);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        m_unit.memory().version.at(i) = static_cast<std::uint8_t>(boxes.at(i)->value());
    }
}

void SimulatorPanel::setFault()
{
    m_unit.setFault({.kind = static_cast<FaultKind>(m_ui->fault->currentData().toInt()),
                     .exchange = m_ui->faultExchange->value()});
}

} // namespace kavelo
