#include "subject.h"
#include "values.h"

#include <qeldevices/deviceerrors.h>

namespace qel::conformance {

using devices::Device;

static const char group[] = "Errors";

// All errors that can be brought about without harm, each as it stood when it was set.
static QVector<Event> provokeErrors(Subject &subject)
{
    QVector<Event> errors;
    Instrument instrument(subject);
    instrument.recorder().setReaction([&](const Event &event) {
        if (event.kind == Event::ErrorChanged
            && (event.errorCode != 0 || !event.additionalInfoTrId.isEmpty()))
            errors += event;
    });
    instrument.open();
    const auto features = instrument.configurable();
    for (const auto feature : features) {
        const auto wrong = wrongConfigurations(feature, instrument->descriptor(feature));
        for (const WrongConfiguration &configuration : wrong) {
            instrument->setConfiguration(feature, configuration.value);
            instrument.run(feature);
            instrument->setConfiguration(feature, QVariant());
        }
    }
    try {
        const auto feature = instrument.startLongRun();
        instrument.callExecute(feature);
        subject.settle();
        instrument.close();
    } catch (const NotApplicable &) {
        // One error less.
    }
    if (errors.isEmpty())
        throw NotApplicable{QStringLiteral("there is no harmless way to bring about an error")};
    return errors;
}

static void checkCodes(Subject &subject)
{
    const QVector<Event> errors = provokeErrors(subject);
    for (const Event &event : errors) {
        const int code = event.errorCode;
        if (code != 0
            && (code < devices::ERROR_DEVICE_UNKNOWN || code > devices::ERROR_DEVICE_API_TOO_NEW))
            throw Broken{QStringLiteral("error %1").arg(errorName(code))};
    }
}

static void checkDetails(Subject &subject)
{
    const QVector<Event> errors = provokeErrors(subject);
    bool found = false;
    for (const Event &event : errors) {
        const QString id = event.additionalInfoTrId;
        if (id.isEmpty())
            continue;
        found = true;
        const QString fault = subject.translationFault(id);
        if (!fault.isEmpty())
            throw Broken{fault};
    }
    if (!found)
        throw NotApplicable{QStringLiteral("the errors brought about have no details")};
}

QVector<Rule> errorRules()
{
    return {
        {801, group, Severity::Failure, false, Needs::Open,
         "Error codes are those of DeviceErrorCode.",
         "Any other code is shown as an unknown error.",
         "Use ERROR_DEVICE_VENDOR_SPECIFIC and say more in the additional information.",
         checkCodes},
        {802, group, Severity::Failure, false, Needs::Open,
         "The additional information of an error is a translation id that the plugin's catalogues "
         "resolve in English and German, or empty.",
         "The application shows it in the user's language.",
         "Translate the id in plugin_en.ts and plugin_de.ts; log what is meant for developers.",
         checkDetails},
    };
}

} // namespace qel::conformance
