#include "trustpane.h"

#include "instruments.h"
#include "log.h"
#include "text.h"

#include <qelfrontend/provenance.h>
#include <qelvalues/names.h>

#include <qeldevices/qeldevices_global.h>

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtCore/QSaveFile>
#include <QtCore/QStandardPaths>
#include <QtCore/QSysInfo>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>

namespace qelworkbench {

namespace {

QLabel *makeTitle(QWidget *parent)
{
    auto *title = new QLabel(parent);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    return title;
}

QPlainTextEdit *makeText(QWidget *parent)
{
    auto *edit = new QPlainTextEdit(parent);
    edit->setReadOnly(true);
    edit->setTabChangesFocus(true);
    edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setMinimumHeight(48);
    return edit;
}

} // namespace

TrustPane::TrustPane(const Instruments *instruments, const QStringList &pluginFolders,
                     QWidget *parent)
    : QWidget(parent)
    , m_instruments(instruments)
    , m_drivers(pluginFolders)
    , m_instrumentTitle(makeTitle(this))
    , m_identity(new QLabel(this))
    , m_firmware(new QPushButton(this))
    , m_driversTitle(makeTitle(this))
    , m_findings(makeText(this))
    , m_logTitle(makeTitle(this))
    , m_log(makeText(this))
    , m_inspect(new QPushButton(this))
    , m_try(new QPushButton(this))
    , m_save(new QPushButton(this))
{
    m_identity->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_identity->setTextFormat(Qt::PlainText);
    m_identity->setWordWrap(true);
    m_log->setMaximumBlockCount(5000);
    m_identity->setObjectName(QStringLiteral("identity"));
    m_firmware->setObjectName(QStringLiteral("firmware"));
    m_findings->setObjectName(QStringLiteral("findings"));
    m_try->setObjectName(QStringLiteral("tryDrivers"));
    m_save->setObjectName(QStringLiteral("report"));
    auto *layout = new QVBoxLayout(this);
    const auto addHead = [layout](QLabel *title, std::initializer_list<QPushButton *> buttons) {
        auto *head = new QHBoxLayout;
        head->addWidget(title, 1);
        for (QPushButton *button : buttons)
            head->addWidget(button);
        layout->addLayout(head);
    };
    addHead(m_instrumentTitle, {m_firmware});
    layout->addWidget(m_identity);
    addHead(m_driversTitle, {m_inspect, m_try});
    layout->addWidget(m_findings, 1);
    addHead(m_logTitle, {m_save});
    layout->addWidget(m_log, 2);

    m_log->setPlainText(Log::instance()->lines().join(QLatin1Char('\n')));
    connect(Log::instance(), &Log::added, m_log, &QPlainTextEdit::appendPlainText);
    connect(&m_drivers, &DriverInspection::changed, this, &TrustPane::showDrivers);
    connect(m_inspect, &QPushButton::clicked, &m_drivers, &DriverInspection::inspect);
    connect(m_try, &QPushButton::clicked, this, &TrustPane::tryDrivers);
    connect(m_firmware, &QPushButton::clicked, this, [this] {
        if (m_instrument)
            m_instrument->readFirmware();
    });
    connect(m_save, &QPushButton::clicked, this, &TrustPane::saveReport);
    retranslate();
}

void TrustPane::setInstrument(Instrument *instrument)
{
    if (m_instrument)
        m_instrument->disconnect(this);
    m_instrument = instrument;
    if (instrument)
        connect(instrument, &Instrument::changed, this, &TrustPane::showInstrument);
    showInstrument();
}

QStringList TrustPane::instrumentLines() const
{
    if (!m_instrument)
        return {text("qelworkbench-no-instrument")};
    const qel::devices::DeviceInfo &info = m_instrument->info();
    QStringList lines{text("qelworkbench-fact-name", info.name()),
                      text("qelworkbench-fact-serial", info.serial()),
                      text("qelworkbench-fact-location", info.location(),
                           qel::values::interfaceName(info.interface())),
                      text("qelworkbench-fact-driver", info.driver())};
    if (const auto plugin = qel::frontend::pluginOfDriver(info.driver()))
        lines.append(text("qelworkbench-fact-plugin", plugin->fileName, plugin->version,
                          plugin->manufacturer));
    if (!m_instrument->firmware().isEmpty())
        lines.append(text("qelworkbench-fact-firmware", m_instrument->firmware()));
    lines.append(text("qelworkbench-fact-state", Instruments::stateText(*m_instrument)));
    return lines;
}

void TrustPane::showInstrument()
{
    m_identity->setText(instrumentLines().join(QLatin1Char('\n')));
    m_firmware->setEnabled(
        m_instrument && m_instrument->state() == Instrument::Ready
        && m_instrument->features().contains(qel::devices::Device::DF_FirmwareInfo));
}

// Drivers that are asked for their instruments may disturb one that measures.
void TrustPane::tryDrivers()
{
    if (m_instruments->isAnyBusy())
        Q_EMIT said(text("qelworkbench-try-busy"), false);
    else
        m_drivers.tryLoading();
}

void TrustPane::showDrivers()
{
    m_try->setEnabled(!m_drivers.isTrying());
    m_inspect->setEnabled(!m_drivers.isTrying());
    QStringList lines = m_drivers.lines();
    if (m_drivers.isTrying())
        lines.prepend(text("qelworkbench-trying"));
    m_findings->setPlainText(lines.join(QLatin1Char('\n')));
}

void TrustPane::showEvent(QShowEvent *event)
{
    // Files are looked at when somebody wants to know, not at each start.
    if (m_drivers.lines().isEmpty())
        m_drivers.inspect();
    QWidget::showEvent(event);
}

QString TrustPane::report() const
{
    QStringList lines{QStringLiteral("qelworkbench %1, Qt %2, %3")
                          .arg(qel::devices::version(), QString::fromLatin1(qVersion()),
                               QSysInfo::prettyProductName()),
                      QDateTime::currentDateTime().toString(Qt::ISODate), QString(),
                      m_instrumentTitle->text()};
    lines += instrumentLines();
    lines += {QString(), m_driversTitle->text()};
    lines += m_drivers.lines();
    lines += {QString(), m_logTitle->text()};
    lines += Log::instance()->lines();
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

void TrustPane::saveReport()
{
    if (m_drivers.lines().isEmpty())
        m_drivers.inspect();
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString path = QFileDialog::getSaveFileName(
        this, m_save->text(), folder + QStringLiteral("/qelworkbench-report.txt"));
    if (path.isEmpty())
        return;
    QSaveFile file(path);
    const QByteArray content = report().toUtf8();
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        Q_EMIT said(text("qelworkbench-exported", QDir::toNativeSeparators(path)), false);
    else
        Q_EMIT said(
            text("qelworkbench-cannot-write", QDir::toNativeSeparators(path), file.errorString()),
            true);
}

void TrustPane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void TrustPane::retranslate()
{
    m_instrumentTitle->setText(text("qelworkbench-instrument"));
    m_driversTitle->setText(text("qelworkbench-drivers"));
    m_logTitle->setText(text("qelworkbench-log"));
    m_findings->setAccessibleName(m_driversTitle->text());
    m_log->setAccessibleName(m_logTitle->text());
    m_inspect->setText(text("qelworkbench-inspect"));
    m_try->setText(text("qelworkbench-try"));
    m_try->setToolTip(text("qelworkbench-try-tip"));
    m_firmware->setText(text("qelworkbench-read-firmware"));
    m_save->setText(text("qelworkbench-report"));
    showInstrument();
    showDrivers();
}

} // namespace qelworkbench
