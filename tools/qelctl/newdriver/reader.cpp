#include "reader.h"

#include <QtCore/QDateTime>

#include <utility>

using namespace qel::devices;
using namespace qel::driver;

// PROTOCOL: a message is a line: words, an asterisk, the exclusive or of all bytes before it.
static QByteArray message(const QByteArray &words)
{
    char sum = 0;
    for (const char byte : words)
        sum = char(sum ^ byte);
    return words + '*' + QByteArray(1, sum).toHex() + '\n';
}

Reader::Reader(const DeviceInfo &info)
    : Instrument(info, QStringLiteral("@name@-busy"))
{
    connect(&m_connection, &Connection::opened, this, [this] {
        m_link.setConnection(m_connection.device());
        ask("ID?", "ID", [this](const QByteArrayList &words) {
            m_model = words.value(1);
            showFeatures();
            opened();
            return true;
        });
    });
    connect(&m_connection, &Connection::failed, this, [this] {
        openingFailed(ERROR_DEVICE_CANT_OPEN, QStringLiteral("@name@-no-connection"));
    });
    const auto isLost = [this] { lost(QStringLiteral("@name@-gone")); };
    connect(&m_connection, &Connection::gone, this, isLost);
    connect(&m_link, &RequestLink::gone, this, isLost);
}

void Reader::startOpening()
{
    m_connection.open(location());
}

void Reader::stopWork()
{
    m_link.clear(m_plate ? message("STOP") : QByteArray());
    m_plate.reset();
}

void Reader::disconnectInstrument()
{
    m_link.setConnection(nullptr);
    m_connection.close();
}

// Everything that is asked goes through here, so that nothing waits for ever. `answer` is the first
// word of the answer; `take` gets its words and says whether the answer is complete.
void Reader::ask(const QByteArray &command, const QByteArray &answer,
                 std::function<bool(const QByteArrayList &)> take)
{
    RequestLink::Request request;
    request.bytes = message(command);
    request.limit = std::chrono::seconds(2);
    request.accepts = [answer](const QByteArray &line) {
        return line.startsWith(answer) || line.startsWith("END");
    };
    request.answered = [this, answer, take](const QByteArray &line) {
        const QByteArray words = line.left(line.lastIndexOf('*'));
        if (message(words) != line) {
            giveUp(ERROR_DEVICE_CHECKSUM_MISMATCH, "@name@-garbled");
            return true;
        }
        return take(words.split(' '));
    };
    request.unanswered = [this] { giveUp(ERROR_DEVICE_TIMEOUT, "@name@-silent"); };
    m_link.send(request);
}

void Reader::giveUp(int code, const char *details)
{
    openingFailed(code, QString::fromLatin1(details));
    fail(code, QString::fromLatin1(details));
}

// PROTOCOL: say here what the instrument can do. Which keys a descriptor has, and of which types,
// is the same for all drivers; applications rely on it.
void Reader::showFeatures()
{
    Detector detector;
    detector.rows = 8;
    detector.columns = 12;
    detector.maximum = 4.0;
    setDescriptor(DF_AmbientTemperature, temperatureDescriptor(0, 60));
    setDescriptor(DF_AbsorbanceMeasurement, absorbanceDescriptor(detector, {405, 450, 620}));
    addFeature(
        {DF_AmbientTemperature, DF_AbsorbanceMeasurement, DF_ReferenceNumber, DF_Calibration});
}

void Reader::startRun(DeviceFeature feature, const QVariantHash &configuration)
{
    switch (feature) {
    case DF_AmbientTemperature:
        ask("TEMP?", "TEMP", [this](const QByteArrayList &words) {
            bool ok = false;
            const double temperature = words.value(1).toDouble(&ok);
            if (ok)
                finish(temperature);
            else // never a number that nobody has measured
                giveUp(ERROR_DEVICE_CANT_WRITE, "@name@-garbled");
            return true;
        });
        break;
    case DF_AbsorbanceMeasurement:
        measure(AbsorbanceMeasurement_config{configuration}.wavelengths());
        break;
    case DF_Calibration:
        askUser(QStringLiteral("@name@-empty-slot"), [this] {
            reportProgress(0);
            ask("CALIBRATE", "CALIBRATED", [this](const QByteArrayList &) {
                finish(QVariantHash{
                    {QStringLiteral("calibratedAt"), QDateTime::currentDateTimeUtc()}});
                return true;
            });
        });
        break;
    default:
        finish(QString::fromLatin1(m_model));
    }
}

void Reader::measure(const QList<int> &wavelengths)
{
    m_wavelengths = wavelengths.isEmpty() ? QList<int>{405, 450, 620} : wavelengths;
    m_plate.emplace(descriptor(DF_AbsorbanceMeasurement).toHash(), m_wavelengths.size(), 21.5);
    const int total = m_wavelengths.size() * m_plate->rows() * m_plate->columns();
    QByteArray command("MEASURE");
    for (const int wavelength : std::as_const(m_wavelengths))
        command += ' ' + QByteArray::number(wavelength);

    reportProgress(0);
    if (!m_plate) // somebody has cancelled already
        return;
    ask(command, "WELL", [this, total](const QByteArrayList &words) {
        if (words.constFirst() == "END") {
            // There is nothing left to stop.
            const PlateResult plate = *std::exchange(m_plate, std::nullopt);
            if (plate.count() == total)
                finish(plate.absorbance(m_wavelengths));
            else // never a plate with a hole that nobody notices
                giveUp(ERROR_DEVICE_CANT_WRITE, "@name@-garbled");
            return true;
        }
        bool ok = false;
        const double value = words.value(3).toDouble(&ok);
        if (!ok || !m_plate->setValue(words.value(1).toInt(), words.value(2).toInt(), value)) {
            giveUp(ERROR_DEVICE_CANT_WRITE, "@name@-garbled");
            return true;
        }
        reportProgress(double(m_plate->count()) / total);
        return false;
    });
}
